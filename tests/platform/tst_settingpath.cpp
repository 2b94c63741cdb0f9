#include "platform/utility/settingpath.h"
#include "tests/support/ownsettings.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QtTest>

class tst_SettingPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QCoreApplication::setApplicationName(QStringLiteral("settingtest"));
        QVERIFY(QDir(folder()).removeRecursively());
    }

    void theApplicationsOwnFileLiesWhereThePlatformKeepsSettings()
    {
        const QString path = Korvane::getSettingPath(QString(), true, true);
        QCOMPARE(path, folder() + QStringLiteral("/settingtest.ini"));
        QVERIFY(QFileInfo(folder()).isDir());
        QVERIFY(!QFileInfo::exists(path)); // the file itself is its writer's business
    }

    void theFolderIsMadeOnlyWhenAsked()
    {
        QCOMPARE(Korvane::getSettingPath(QStringLiteral("a.ini"), true, false), folder() + QStringLiteral("/a.ini"));
        QVERIFY(!QFileInfo::exists(folder()));
    }

    void forAllUsersItLiesBesideTheProgram()
    {
        QCOMPARE(Korvane::getSettingPath(QStringLiteral("a.ini"), false, false),
                 QCoreApplication::applicationDirPath() + QStringLiteral("/a.ini"));
    }

private:
    OwnSettings m_settings;

    static QString folder() { return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation); }
};

QTEST_GUILESS_MAIN(tst_SettingPath)
#include "tst_settingpath.moc"

#include "platform/utility/settingpath.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

class tst_SettingPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Nobody's own settings are touched, however the test is started.
        QVERIFY(m_settings.isValid());
        qputenv("XDG_CONFIG_HOME", m_settings.path().toLocal8Bit());
    }

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
    QTemporaryDir m_settings;

    static QString folder() { return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation); }
};

QTEST_GUILESS_MAIN(tst_SettingPath)
#include "tst_settingpath.moc"

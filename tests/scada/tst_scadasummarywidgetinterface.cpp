#include "platform/utility/settingpath.h"
#include "scada/hub/scadasummarywidgetinterface.h"
#include "tests/support/ownsettings.h"

#include <QDockWidget>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QtTest>

namespace {

QString settingsFile()
{
    return Korvane::getSettingPath(QString(), true, true);
}

QVariant stored(const char* key)
{
    return QSettings(settingsFile(), QSettings::IniFormat)
        .value(QLatin1String("ScadaSummaryWidget/") + QLatin1String(key));
}

} // namespace

class tst_ScadaSummaryWidgetInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QFile::remove(settingsFile());
        QVERIFY(!QFileInfo::exists(settingsFile()));
    }

    void aFirstStartHasTheDefaultGeometry()
    {
        const QRect plain = QMainWindow().geometry();
        const ScadaSummaryWidgetInterface window;
        QCOMPARE(window.geometry(), plain);
        QCOMPARE(window.windowTitle(), QStringLiteral("Scada Summary"));
        QVERIFY(!window.parentWidget());
    }

    void itsEndStoresBothKeys()
    {
        {
            const ScadaSummaryWidgetInterface window;
        }
        QVERIFY(!stored("Geometry").toByteArray().isEmpty());
        QVERIFY(!stored("State").toByteArray().isEmpty());
    }

    void theGeometryComesBack()
    {
        const QRect placed(40, 50, 320, 240);
        {
            ScadaSummaryWidgetInterface window;
            window.setGeometry(placed);
        }
        const ScadaSummaryWidgetInterface window;
        QCOMPARE(window.geometry(), placed);
    }

    void theStateIsThatOfVersionZero()
    {
        {
            ScadaSummaryWidgetInterface window;
            auto* dock = new QDockWidget(&window);
            dock->setObjectName(QStringLiteral("trend"));
            window.addDockWidget(Qt::LeftDockWidgetArea, dock);
        }
        QMainWindow other;
        auto* dock = new QDockWidget(&other);
        dock->setObjectName(QStringLiteral("trend"));
        other.addDockWidget(Qt::RightDockWidgetArea, dock);
        QVERIFY(other.restoreState(stored("State").toByteArray(), 0));
        QCOMPARE(other.dockWidgetArea(dock), Qt::LeftDockWidgetArea);
    }

    void theStateComesBackForDocksMadeLater()
    {
        {
            ScadaSummaryWidgetInterface window;
            auto* dock = new QDockWidget(&window);
            dock->setObjectName(QStringLiteral("trend"));
            window.addDockWidget(Qt::TopDockWidgetArea, dock);
        }
        ScadaSummaryWidgetInterface window;
        auto* dock = new QDockWidget(&window);
        dock->setObjectName(QStringLiteral("trend"));
        QVERIFY(window.restoreDockWidget(dock));
        QCOMPARE(window.dockWidgetArea(dock), Qt::TopDockWidgetArea);
    }

    void settingsOfOtherGroupsStay()
    {
        QSettings(settingsFile(), QSettings::IniFormat).setValue(QStringLiteral("other/key"), 5);
        {
            const ScadaSummaryWidgetInterface window;
        }
        QCOMPARE(QSettings(settingsFile(), QSettings::IniFormat).value(QStringLiteral("other/key")).toInt(), 5);
    }

    void aDamagedLayoutLeavesTheDefault()
    {
        {
            QSettings settings(settingsFile(), QSettings::IniFormat);
            settings.setValue(QStringLiteral("ScadaSummaryWidget/Geometry"), QByteArray("none"));
            settings.setValue(QStringLiteral("ScadaSummaryWidget/State"), 12);
        }
        const QRect plain = QMainWindow().geometry();
        const ScadaSummaryWidgetInterface window;
        QCOMPARE(window.geometry(), plain);
    }

private:
    OwnSettings m_settings;
};

QTEST_MAIN(tst_ScadaSummaryWidgetInterface)
#include "tst_scadasummarywidgetinterface.moc"

// What an operator and an engineer wait for: the access rights of a page among 10,000 accounts, beside a plain list of
// as many entries, and tips.

#include "bench/support/ratioreport.h"
#include "platform/data/dataserviceinterface.h"
#include "scada/widgets/canvasaccessrightsettingwidget.h"
#include "scada/widgets/pointtooltipwidget.h"
#include "tests/support/testcore.h"
#include "tests/support/testhub.h"

#include <QApplication>
#include <QListWidget>
#include <QPointer>

namespace {

constexpr int accountCount = 10000;

class Accounts : public DataServiceInterface
{
public:
    Accounts()
    {
        for (int i = 1; i <= accountCount; ++i)
            m_accounts.append({EUserAccount::State::Stored, i, QStringLiteral("operator %1").arg(i)});
    }
    QVariant historyValue(ObjectKey, DataCode::DataField) override { return {}; }
    bool queryUserAccounts(const QString&, QList<EUserAccount>& accounts) override
    {
        accounts += m_accounts;
        return true;
    }

private:
    QList<EUserAccount> m_accounts;
};

/// A host with accounts.
class Host : public TestCore
{
public:
    Host()
    {
        m_hub.setDataServiceInterface(&m_accounts);
        hub = &m_hub;
    }

private:
    Accounts m_accounts;
    TestHub m_hub;
};

QList<int> everyNumber()
{
    QList<int> numbers;
    for (int i = accountCount; i > 0; --i)
        numbers.append(i);
    return numbers;
}

/// Until it is painted, as opened from a page's menu.
void openRights(benchmark::State& state)
{
    Host host;
    const QList<int> users = everyNumber();
    for (auto _ : state) {
        CanvasAccessRightSettingWidget widget;
        widget.init(&host);
        widget.setData(1, users);
        widget.show();
        QCoreApplication::processEvents();
    }
}

void openPlainList(benchmark::State& state)
{
    for (auto _ : state) {
        QListWidget list;
        for (int i = 1; i <= accountCount; ++i) {
            auto* item = new QListWidgetItem(QStringLiteral("operator %1").arg(i), &list);
            item->setData(Qt::UserRole, i);
            item->setCheckState(Qt::Checked);
        }
        list.show();
        QCoreApplication::processEvents();
    }
}

void showRights(benchmark::State& state)
{
    Host host;
    const QList<int> users = everyNumber();
    CanvasAccessRightSettingWidget widget;
    widget.init(&host);
    widget.show();
    QCoreApplication::processEvents();
    for (auto _ : state) {
        widget.setData(1, users);
        QCoreApplication::processEvents();
        widget.setData(0, {});
        QCoreApplication::processEvents();
    }
}

void readRights(benchmark::State& state)
{
    Host host;
    CanvasAccessRightSettingWidget widget;
    widget.init(&host);
    widget.setData(1, everyNumber());
    for (auto _ : state) {
        QList<int> users = widget.selectedUsers();
        benchmark::DoNotOptimize(users);
    }
}

void placeTip(benchmark::State& state)
{
    PointToolTipWidget tip;
    int x = 0;
    for (auto _ : state) {
        tip.placeTip(QPoint(x, 100), nullptr);
        x = (x + 7) % 800;
    }
}

void showTip(benchmark::State& state)
{
    QWidget window;
    window.show();
    QCoreApplication::processEvents(); // its coming up would end a tip
    for (auto _ : state) {
        const QPointer<PointToolTipWidget> tip =
            PointToolTipWidget::showTip(QStringLiteral("P1.FLOW"), QStringLiteral("Flow"), QPointF(100, 100), &window);
        QCoreApplication::processEvents();
        delete tip.data();
    }
}

void ignore(QtMsgType, const QMessageLogContext&, const QString&)
{
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(ignore); // the screen that is none remarks on every window
    const QApplication application(argc, argv);
    const auto add = [](const char* name, auto function) { return benchmark::RegisterBenchmark(name, function); };
    add("open the rights of a page, 10,000 accounts, until painted", openRights);
    add("open the rights of a page, 10,000 accounts, until painted (plain)", openPlainList);
    add("show all and then none of 10,000 accounts chosen", showRights);
    add("read 10,000 chosen accounts", readRights);
    add("place a tip", placeTip);
    add("show a tip until it is painted", showTip);
    return korvaneBenchmarkMain(argc, argv);
}

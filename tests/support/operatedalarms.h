#pragma once

#include "host/alarmview/alarmlistwindow.h"
#include "tests/support/alarmplant.h"

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableView>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

/// A page that shows some objects.
class PageOfObjects : public TestCanvasScadaActionManager
{
public:
    PageOfObjects() : TestCanvasScadaActionManager(nullptr) {}
    QList<ObjectKey> boundObjects() const override { return objects; }

    QList<ObjectKey> objects;
};

/// A plant with its alarm list in front of an operator.
class OperatedAlarms : public AlarmPlant
{
public:
    OperatedAlarms()
    {
        AlarmDisplayFilterInfo filter;
        filter.showToolBar = true;
        window.applyFilter(filter);
        window.resize(1200, 500);
        window.show();
        QApplication::setActiveWindow(&window);
        table->setFocus();
    }

    template <typename T>
    T* part(const char* name) const
    {
        T* found = window.findChild<T*>(QString::fromLatin1(name));
        if (!found)
            qFatal("no %s", name);
        return found;
    }
    /// Has what happened shown.
    void settle()
    {
        QSignalSpy changed(table->model(), SIGNAL(changed()));
        if (!changed.wait())
            qFatal("nothing changed");
    }
    QList<quint64> ids() const
    {
        QList<quint64> all;
        for (int row = 0; row < table->model()->rowCount(); ++row)
            all.append(table->model()->index(row, 0).data(AlarmListModel::IdRole).toULongLong());
        return all;
    }
    void click(quint64 id, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        const QModelIndex index = table->model()->index(ids().indexOf(id), 0);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers, table->visualRect(index).center());
    }
    void press(const char* action) const
    {
        auto* bar = window.findChild<QToolBar*>();
        QTest::mouseClick(bar->widgetForAction(part<QAction>(action)), Qt::LeftButton);
    }
    bool isEnabled(const char* action) const { return part<QAction>(action)->isEnabled(); }
    /// Chooses from the menu of a filter button.
    void choose(const char* button, const QString& text) const
    {
        QMenu* menu = part<QToolButton>(button)->menu();
        menu->popup({});
        clickIn(menu, text);
    }
    static void clickIn(QMenu* menu, const QString& text)
    {
        for (QAction* action : menu->actions()) {
            if (action->text() == text) {
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                return;
            }
        }
        qFatal("no %s", qPrintable(text));
    }
    QMenu* openColumnsMenu() const
    {
        QHeaderView* header = table->horizontalHeader();
        const QPoint place(5, 5);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, header->viewport()->mapToGlobal(place));
        QApplication::sendEvent(header->viewport(), &event);
        return table->findChild<QMenu*>(QStringLiteral("columnsMenu"));
    }
    /// The dialog that is open, filled in with a reason.
    ShelveDialog* giveReason(const QString& reason) const
    {
        auto* dialog = window.findChild<ShelveDialog*>();
        if (dialog)
            QTest::keyClicks(dialog->findChild<QLineEdit*>(QStringLiteral("reasonEdit")), reason);
        return dialog;
    }
    void openLog() const { part<QTabWidget>("alarmTabs")->setCurrentIndex(1); }
    QStringList logColumn(int column) const
    {
        const QAbstractItemModel* lines = part<QTableView>("logTable")->model();
        QStringList texts;
        for (int row = 0; row < lines->rowCount(); ++row)
            texts.append(lines->index(row, column).data().toString());
        return texts;
    }

    AlarmListWindow window{system, hub, {QStringLiteral("North"), QStringLiteral("South")}};
    QTableView* table = window.findChild<QTableView*>(QStringLiteral("alarmTable"));
};

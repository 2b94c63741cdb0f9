#pragma once

#include "platform/ui/finddialog.h"
#include "platform/ui/pointbrowserdialog.h"
#include "scada/actions/korvanescriptoreditor.h"
#include "tests/scada/latintext.h"
#include "tests/support/testcore.h"
#include "tests/support/testscriptinterface.h"

#include <QLayout>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <QToolButton>
#include <QtTest>

#include <memory>

/// What a tool of the script editor does, by its place.
enum Tool { RunTool, PointTool, FileTool, FindTool };

/// An editor with a script interface and, unless told, a canvas.
struct Edited
{
    explicit Edited(bool withCanvas = true)
    {
        editor->init(withCanvas ? &canvas : nullptr, &scripts);
        scripts.calls.clear();
    }

    QPlainTextEdit& text() const { return *editor->scriptEditor(); }
    QTextBrowser& console() const { return *editor->findChild<QTextBrowser*>(); }
    QSplitter& splitter() const { return *editor->findChild<QSplitter*>(QStringLiteral("splitter")); }
    QToolButton& tool(Tool which) const
    {
        return *qobject_cast<QToolButton*>(editor->layout()->itemAt(0)->widget()->layout()->itemAt(which)->widget());
    }
    FindDialog* findDialog() const { return editor->findChild<FindDialog*>(); }
    QList<PointBrowserDialog*> browsers() const { return editor->findChildren<PointBrowserDialog*>(); }

    QStringList paragraphs() const
    {
        QStringList texts;
        for (QTextBlock block = console().document()->begin(); block.isValid(); block = block.next())
            texts.append(block.text());
        return texts;
    }
    QString selected() const { return text().textCursor().selectedText(); }
    int selectedAt() const { return text().textCursor().selectionStart(); }
    void setPosition(int anchor, int position) const
    {
        QTextCursor cursor = text().textCursor();
        cursor.setPosition(anchor);
        cursor.setPosition(position, QTextCursor::KeepAnchor);
        text().setTextCursor(cursor);
    }
    bool showInFront() const
    {
        editor->resize(400, 400);
        editor->show();
        return QTest::qWaitForWindowActive(editor.get());
    }

    TestCanvas canvas;
    TestScriptInterface scripts;
    std::unique_ptr<KorvaneScriptorEditor> editor = std::make_unique<KorvaneScriptorEditor>(nullptr);
};

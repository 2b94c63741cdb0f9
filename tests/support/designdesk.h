#pragma once

#include "host/design/designdocument.h"
#include "host/design/designsystem.h"
#include "tests/support/testproject.h"

#include <QStringList>

#include <memory>

/// The page "plant" of a project, opened for editing.
struct DesignDesk
{
    explicit DesignDesk(const QByteArray& page = TestProject::plantPage(), const QByteArray& points = {})
    {
        project.write("pages/plant.pws", page);
        if (!points.isEmpty())
            project.write("points.csv", points);
        auto opened = DesignSystem::open(project.folder());
        if (!opened)
            qFatal("%s", qPrintable(opened.error()));
        system = std::move(*opened);
        reopen();
    }
    void reopen(const char* page = "plant")
    {
        auto opened = system->openPage(QString::fromUtf8(page));
        if (!opened)
            qFatal("%s", qPrintable(opened.error()));
        document = std::move(*opened);
    }
    QByteArray file() const { return project.read("pages/plant.pws"); }
    Shape* shape(const char* name) const { return document->canvas().findShape(QString::fromUtf8(name)); }
    void set(const Shape* shape, Korvane::TriggerType trigger, const char* script) const
    {
        ScadaScriptAction action;
        action.setTriggerType(trigger);
        action.setScript(QString::fromUtf8(script));
        document->setScripts(shape, {action});
    }
    /// "8: go | 13: load"
    QString scripts(const Shape* shape) const
    {
        QStringList texts;
        QList<ScadaScriptAction> all = document->scripts(shape);
        for (ScadaScriptAction& script : all)
            texts.append(QStringLiteral("%1: %2").arg(static_cast<int>(script.triggetType())).arg(script.script()));
        return texts.join(QStringLiteral(" | "));
    }
    /// "Number FLOW | Colour, condition FLOW"
    QString bindings(const Shape* shape) const
    {
        QStringList texts;
        for (const ShapeBinding& binding : document->bindings(*shape))
            texts.append(binding.purpose() + QLatin1Char(' ') + binding.tag);
        return texts.join(QStringLiteral(" | "));
    }

    TestProject project;
    std::unique_ptr<DesignSystem> system;
    std::unique_ptr<DesignDocument> document;
};

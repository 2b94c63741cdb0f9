#pragma once

#include "host/accounts/accountdatabase.h"
#include "host/canvas/canvas.h"
#include "host/canvas/canvasview.h"
#include "host/runtime/livesystem.h"
#include "host/shapes/shape.h"
#include "tests/support/temporaryfiles.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <memory>

/// The demo project with user security in a folder of its own, fed by its simulation, and four users whose password is
/// their name with "-password": ada (administrator), sue (supervisor), otto (operator) and vera (viewer).
class OperatedProject
{
public:
    static QString password(const QString& user) { return user + QStringLiteral("-password"); }

    explicit OperatedProject(bool isSecured = true)
    {
        const QString demo = QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop");
        if (!QDir().mkpath(m_files.path(QStringLiteral("plant/pages"))))
            qFatal("no folder for pages");
        for (const char* name : {"points.csv", "pages/operating.pws", "pages/overview.pws", "pages/alarms.pws"})
            m_files.write(QStringLiteral("plant/") + QLatin1String(name), contents(demo, name));
        QByteArray project = contents(demo, "project.json");
        project.replace("\"security\": false", isSecured ? "\"security\": true" : "\"security\": false");
        project.replace("recording:recordings/loop.csv?loop=1", "simulation");
        project.replace("\"startPage\": \"overview\"", "\"startPage\": \"operating\"");
        m_files.write(QStringLiteral("plant/project.json"), project);
        if (isSecured)
            addUsers();
    }

    QString folder() const { return m_files.path(QStringLiteral("plant")); }
    QByteArray read(const char* name) const { return contents(folder(), name); }
    void write(const char* name, const QByteArray& bytes) const
    {
        m_files.write(QStringLiteral("plant/") + QLatin1String(name), bytes);
    }

    /// The project at work, started unless that failed.
    std::unique_ptr<LiveSystem> open() const
    {
        LiveSystem::Options options;
        options.folder = folder();
        auto system = LiveSystem::open(options);
        if (!system)
            qFatal("%s", qPrintable(system.error()));
        return std::move(*system);
    }

    /// The middle of a shape on the viewport of its view.
    static QPoint middleOf(const CanvasView& view, const char* shape)
    {
        const Shape* found = view.canvas().findShape(QLatin1String(shape));
        if (!found)
            qFatal("no shape %s", shape);
        return view.viewportRect(*found).center();
    }

private:
    static QByteArray contents(const QString& folder, const char* name)
    {
        QFile file(QDir(folder).filePath(QLatin1String(name)));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
        return file.readAll();
    }
    void addUsers() const
    {
        AccountDatabase accounts;
        AccountSettings settings;
        settings.fileName = m_files.path(QStringLiteral("plant/accounts.db"));
        if (const auto opened = accounts.open(settings); !opened)
            qFatal("%s", qPrintable(opened.error()));
        for (const auto& [user, role] :
             {std::pair("ada", AccountRole::Administrator), std::pair("sue", AccountRole::Supervisor),
              std::pair("otto", AccountRole::Operator), std::pair("vera", AccountRole::Viewer)}) {
            EUserAccount account;
            account.name = QLatin1String(user);
            account.role = accountRoleName(role);
            if (const auto added = accounts.add(account, password(account.name)); !added)
                qFatal("%s", qPrintable(added.error()));
        }
    }

    TemporaryFiles m_files;
};

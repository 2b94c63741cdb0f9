#pragma once

#include "tests/support/temporaryfiles.h"

#include <QDir>
#include <QFile>

/// A small project in a folder of its own: two points and, unless a test writes others, the pages "plant" and "empty".
class TestProject
{
public:
    TestProject()
    {
        if (!QDir().mkpath(path("pages")))
            qFatal("no folder for pages");
        write("project.json",
              json("{'version': 1, 'name': 'test plant', 'startPage': 'plant', 'scriptLimitMs': 1500}"));
        write("points.csv", "id,name,kind\n200001,FLOW,analog\n100001,PUMP,digital\n");
        write("pages/plant.pws", plantPage());
        write("pages/empty.pws", json("{'format': 'korvane-page', 'version': 1, 'layers': []}\n"));
    }

    QString folder() const { return m_files.path(QStringLiteral("project")); }
    QString path(const char* name) const { return folder() + QLatin1Char('/') + QString::fromUtf8(name); }
    void write(const char* name, const QByteArray& bytes) const
    {
        m_files.write(QStringLiteral("project/") + QString::fromUtf8(name), bytes);
    }
    QByteArray read(const char* name) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
        return file.readAll();
    }

    /// JSON written with single quotes, for the eye.
    static QByteArray json(QByteArray text) { return text.replace('\'', '"'); }

    /// The page as the page writer writes it: 400 by 200, with a script of its own, the label "text" with one for a
    /// press, the rectangle "box" without, a nameless rectangle, and members that no program knows.
    static QByteArray plantPage()
    {
        return json("{\n"
                    " 'format': 'korvane-page',\n"
                    " 'version': 1,\n"
                    " 'title': 'Plant',\n"
                    " 'size': [400, 200],\n"
                    " 'background': '#ffffff',\n"
                    " 'events': [{\n"
                    "   'trigger': 6,\n"
                    "   'type': 1001,\n"
                    "   'script': [\n"
                    "    'print(1)',\n"
                    "    ''\n"
                    "   ]\n"
                    "  }],\n"
                    " 'author': 'someone',\n"
                    " 'layers': [{\n"
                    "   'name': 'lower',\n"
                    "   'visible': true,\n"
                    "   'marks': true,\n"
                    "   'shapes': [{\n"
                    "     'class': 'Rectangle',\n"
                    "     'name': 'box',\n"
                    "     'place': [20, 20, 100, 60],\n"
                    "     'properties': {},\n"
                    "     'group': 7\n"
                    "    }, {\n"
                    "     'class': 'Rectangle',\n"
                    "     'place': [20, 120, 100, 60],\n"
                    "     'properties': {}\n"
                    "    }]\n"
                    "  }, {\n"
                    "   'name': 'upper',\n"
                    "   'visible': true,\n"
                    "   'marks': true,\n"
                    "   'shapes': [{\n"
                    "     'class': 'Label',\n"
                    "     'name': 'text',\n"
                    "     'place': [200, 20, 100, 60],\n"
                    "     'properties': {\n"
                    "      'Text': 'off'\n"
                    "     },\n"
                    "     'events': [{\n"
                    "       'trigger': 8,\n"
                    "       'type': 1001,\n"
                    "       'script': [\n"
                    "        'print(trigger)'\n"
                    "       ],\n"
                    "       'by': 'hand'\n"
                    "      }, {\n"
                    "       'trigger': 1,\n"
                    "       'type': 99\n"
                    "      }]\n"
                    "    }]\n"
                    "  }]\n"
                    "}\n");
    }

private:
    TemporaryFiles m_files;
};

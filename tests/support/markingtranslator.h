#pragma once

#include <QCoreApplication>
#include <QTranslator>

/// Translates every text to its context, "::" and itself while it lives, so that a test sees under which context a text
/// is looked up.
class MarkingTranslator : public QTranslator
{
public:
    MarkingTranslator() { QCoreApplication::installTranslator(this); }
    ~MarkingTranslator() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* text, const char*, int) const override
    {
        return QLatin1String(context) + QLatin1String("::") + QLatin1String(text);
    }
};

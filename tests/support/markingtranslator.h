#pragma once

#include <QCoreApplication>
#include <QStringList>
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
        translations.append(QLatin1String(context) + QLatin1String("::") + QLatin1String(text));
        return translations.last();
    }

    mutable QStringList translations; ///< so far, those too that no one got to see
};

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // hosts written for Qt 4 still call it
/// \p text by the class's own trUtf8().
template <typename Class>
QString translatedFromUtf8(const char* text)
{
    return Class::trUtf8(text);
}
QT_WARNING_POP

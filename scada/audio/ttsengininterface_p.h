#pragma once

#include <QLocale>
#include <QObject>

/// Speaks one language. Not part of the library's interface.
class TTSEnginInterface : public QObject
{
public:
    using QObject::QObject;

    /// Speaks \p text, if it can; says nothing of it if it can't.
    virtual void playMessage(const QString& text) = 0;
    virtual QLocale::Language language() const = 0;
};

#pragma once

#include <QString>

class QTranslator;

/// What every program of the house does at its start.
namespace Program {

/// Without a display a program draws off screen, instead of failing as Qt would.
bool hasDisplay();
/// To be called before the application is made.
void prepare(bool isHeadless);
/// Names the application, which its settings are kept under. To be called after it is made.
void name(const QString& name, const QString& version);
/// Installs the user's language, where there is one.
void loadTranslation(QTranslator& translator);
/// Tells the user's terminal.
void complain(const QString& text);

} // namespace Program

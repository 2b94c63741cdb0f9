#pragma once

#include <QObject>
#include <QString>

class QLabel;
class QLineEdit;

/// The two fields of a form in which a new password is written and repeated, and the line that says what is missing. Its
/// strength is told by length only: rules for characters make passwords worse.
class NewPasswordFields : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(NewPasswordFields)

public:
    /// The fields are not owned; \p parent is the dialog that owns them.
    NewPasswordFields(QLineEdit* password, QLineEdit* repeated, QLabel* hint, QObject* parent);

    QString password() const;
    /// Whether the password may be taken and both are the same.
    bool isComplete() const;
    /// Empties both and puts the cursor into the first.
    void clear();

Q_SIGNALS:
    void changed();

private:
    QString hint() const;

    QLineEdit* m_password;
    QLineEdit* m_repeated;
    QLabel* m_hint;
};

#pragma once

#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"
#include "scada/records/inputinfoparam.h"

#include <QDialog>
#include <QList>
#include <QPair>
#include <QString>

class QComboBox;
class QDialogButtonBox;
class QDoubleSpinBox;
class QFormLayout;
class QLabel;
class QLineEdit;

/// Asks an operator for what a command needs: a number within limits, or one of several named values, and a reason.
///
/// What the page says may be entered comes first. Where it says nothing, the point does: states for a digital point,
/// the bounds of its commands for an analog one.
class KORVANE_HOST_EXPORT OperatorInputDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(OperatorInputDialog)

public:
    struct Question
    {
        QString command; ///< what is to be done, for the operator's eyes
        InputInfoParam input = {};
        bool isValueNeeded = true;
        bool isReasonNeeded = false;
        QVariant present = {}; ///< present value of the object; invalid when not known
    };

    OperatorInputDialog(const RuntimeDatabase::Object& object, const Question& question, QWidget* parent = nullptr);
    ~OperatorInputDialog() override;

    /// The value to be sent, scaled; 0 where none was asked for.
    double value() const;
    QString reason() const;

private:
    void addNumber(QFormLayout& form, const RuntimeDatabase::Object& object, const Question& question);
    void addChoice(QFormLayout& form, const QList<QPair<QString, double>>& choices, const QVariant& present);
    void enableOk();

    QDoubleSpinBox* m_number = nullptr;
    QComboBox* m_choice = nullptr;
    QLineEdit* m_reason = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
    double m_scale = 1; ///< from what is shown to what is sent
    bool m_isReasonNeeded = false;
    bool m_isNumberMeant = false; ///< the number is the present one, or the operator's
};

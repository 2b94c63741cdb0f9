#pragma once

#include "host/canvas/operation.h"
#include "host/hostexport.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTableWidget>
#include <QWidget>

class DesignDocument;
class Shape;
class TagField;

/// What an operator does to the process with a shape: the command, the object that it goes to, its value or what may be
/// entered, and a key. Each change is taken when the user is done with it and can be undone in the document; while no
/// object is named, nothing is taken.
class KORVANE_HOST_EXPORT OperationEditor : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(OperationEditor)

public:
    explicit OperationEditor(QWidget* parent = nullptr);
    ~OperationEditor() override;

    /// \param document not owned; null for none, which is to be told before a document goes
    /// \param shape of its page; null for none
    void showShape(DesignDocument* document, Shape* shape);
    /// Takes what was typed as if the user were done.
    void commit();

private:
    enum Mode { FixedValue, AnyNumber, NumberWithin, ListedValue };

    void addChoices();
    void addTag();
    void addNumbers();
    void addList();
    QLineEdit* makeNumber();
    void fill();
    void showNumbers(const NumberInputParam& number);
    void showList(const EnumInputParam& list);
    void showParts();
    void showProblem();
    QString unfinished() const;
    QString doubtful(const Operation& operation) const;
    void chooseKind();
    void addListed();
    void removeListed();
    std::optional<Operation> edited() const;
    NumberInputParam editedNumber() const;
    EnumInputParam editedList() const;
    void take();

    DesignDocument* m_document = nullptr;
    Shape* m_shape = nullptr;
    bool m_isFilling = false;
    QComboBox* m_kind;
    QWidget* m_details;
    TagField* m_tag = nullptr; ///< of the document; null without one
    QFormLayout* m_form;
    QComboBox* m_mode;
    QLineEdit* m_value;
    QWidget* m_numbers;
    QLineEdit* m_minimum;
    QLineEdit* m_maximum;
    QLineEdit* m_step;
    QSpinBox* m_decimals;
    QCheckBox* m_usesScale;
    QLineEdit* m_scale;
    QWidget* m_list;
    QTableWidget* m_listed;
    QKeySequenceEdit* m_key;
    QLabel* m_problem;
};

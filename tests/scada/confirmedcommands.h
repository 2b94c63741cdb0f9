#pragma once

#include "platform/core/korvanedatabasemanagerinterface.h"
#include "tests/support/testservices.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLayout>
#include <QMap>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

/// Users with passwords; the operator "kim" is logged on. It notes whose password it was asked for, and what was given.
class TestUsers : public KorvaneDataBaseManagerInterface
{
public:
    QString currentUserId() override { return QStringLiteral("kim"); }
    bool checkCurrentUserPassword(const QString& password) override
    {
        asked.append({currentUserId(), password});
        return passwords.value(currentUserId()) == password;
    }
    bool checkUserPassword(const QString& user, const QString& password, QString& message) override
    {
        asked.append({user, password});
        givenMessages.append(message);
        const bool isRight = passwords.value(user) == password;
        if (!isRight)
            message = refusal;
        return isRight;
    }

    QMap<QString, QString> passwords = {{QStringLiteral("kim"), QStringLiteral("k1")},
                                        {QStringLiteral("lee"), QStringLiteral("l1")}};
    QString refusal;
    QList<QPair<QString, QString>> asked;
    QStringList givenMessages;
};

/// A project with user security or without.
class SecuredProject : public TestProjectManager
{
public:
    SecuredProject() : TestProjectManager(nullptr) {}

    bool isSecurityEnabled() override { return isSecured; }

    bool isSecured = true;
};

/// What a message box said.
struct ShownBox
{
    QWidget* parent;
    QString title;
    QString text;
    QMessageBox::Icon icon;
    QMessageBox::StandardButtons buttons;
};

/// The message boxes that come up while \p act runs, each of which is answered with Ok.
template <typename Act>
QList<ShownBox> boxesDuring(Act act)
{
    QList<ShownBox> boxes;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&boxes] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        boxes.append({box->parentWidget(), box->windowTitle(), box->text(), box->icon(), box->standardButtons()});
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    });
    timer.start(0);
    act();
    return boxes;
}

inline void click(const QDialog& dialog, QDialogButtonBox::StandardButton button)
{
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
}

/// Runs the dialog; \p act, inside it, must bring it to its end, unless it fails.
template <typename Act>
int resultOf(QDialog& dialog, Act act)
{
    QTimer::singleShot(0, &dialog, [&dialog, act] {
        act();
        if (QTest::currentTestFailed())
            dialog.reject();
    });
    return dialog.exec();
}

inline void checkSpacer(QLayoutItem* item, const QSize& size, Qt::Orientations expanding)
{
    QVERIFY(item && item->spacerItem());
    QCOMPARE(item->sizeHint(), size);
    QCOMPARE(item->expandingDirections(), expanding);
}

/// White on black, 14 points, centred.
inline void checkCommandLabel(const QLabel& label)
{
    QCOMPARE(label.alignment(), Qt::AlignCenter);
    QCOMPARE(label.font().pointSize(), 14);
    QCOMPARE(label.styleSheet(), QStringLiteral("background-color: rgb(0, 0, 0);"));
    QVERIFY(!label.wordWrap());
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const QColor text = group == QPalette::Disabled ? QColor(120, 120, 120) : QColor(255, 255, 255);
        QCOMPARE(label.palette().color(group, QPalette::WindowText), text);
        QCOMPARE(label.palette().color(group, QPalette::Text), text);
        for (const auto role : {QPalette::Button, QPalette::Base, QPalette::Window})
            QCOMPARE(label.palette().color(group, role), QColor(0, 0, 0));
    }
}

/// How many pixels of a widget, as it is painted, have the colour.
inline int pixelsOf(QWidget& widget, const QColor& colour)
{
    const QImage image = widget.grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == colour ? 1 : 0;
    }
    return count;
}

#include "scada/widgets/userconfirmdialog.h"
#include "tests/scada/confirmedcommands.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/narrowstyle.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/testcore.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QSignalSpy>

#include <functional>
#include <memory>

using Asked = QList<QPair<QString, QString>>;

Q_DECLARE_METATYPE(std::function<void(QDialog&)>)

namespace {

const QString command = QStringLiteral("CB-101 : OPEN");
const QString lee = QStringLiteral("lee");

} // namespace

class tst_UserConfirmDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        dropOffscreenWarnings();
        QApplication::setStyle(new NarrowStyle);
    }

    void init()
    {
        m_users = std::make_unique<TestUsers>();
        m_core.users = m_users.get();
        m_dialog = std::make_unique<UserConfirmDialog>(nullptr, &m_core, command, lee);
    }
    void cleanup() { m_dialog.reset(); }

    void theFormIsNamedTitledAndSized()
    {
        QWidget parent;
        const UserConfirmDialog dialog(&parent, &m_core, command, lee);
        QCOMPARE(dialog.parentWidget(), &parent);
        QCOMPARE(dialog.objectName(), QStringLiteral("UserConfirmDialog"));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("User Confirm"));
        QCOMPARE(dialog.size(), QSize(279, 198));
        QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
        QCOMPARE(dialog.windowType(), Qt::Dialog);
        QVERIFY(dialog.font().styleStrategy() & QFont::PreferAntialias);
    }

    void theFormsRowsStandAsDesigned()
    {
        auto* rows = qobject_cast<QGridLayout*>(m_dialog->layout());
        QVERIFY(rows);
        QCOMPARE(rows->objectName(), QStringLiteral("gridLayout_2"));
        QCOMPARE(rows->horizontalSpacing(), 6);
        QCOMPARE(rows->verticalSpacing(), 6);
        QCOMPARE(rows->contentsMargins(), QMargins(11, 11, 11, 11));
        QCOMPARE(rows->count(), 5);
        const QStringList names = {QStringLiteral("groupBox"), QStringLiteral("groupBox_2"), QStringLiteral("line"),
                                   QStringLiteral("buttonBox")};
        for (int row = 0; row < names.size(); ++row)
            QCOMPARE(rows->itemAtPosition(row, 0)->widget()->objectName(), names[row]);
        checkSpacer(rows->itemAtPosition(4, 0), QSize(20, 4), Qt::Vertical);

        auto* line = qobject_cast<QFrame*>(rows->itemAtPosition(2, 0)->widget());
        QVERIFY(line);
        QCOMPARE(line->frameShape(), QFrame::HLine);
        QCOMPARE(line->frameShadow(), QFrame::Sunken);
        QCOMPARE(find<QDialogButtonBox>("buttonBox")->standardButtons(),
                 QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    }

    void theCommandStandsBetweenSpacers()
    {
        const auto* group = find<QGroupBox>("groupBox");
        QCOMPARE(group->title(), QStringLiteral("Command"));
        QVERIFY(group->isFlat());
        auto* row = qobject_cast<QHBoxLayout*>(group->layout());
        QVERIFY(row);
        QCOMPARE(row->objectName(), QStringLiteral("horizontalLayout"));
        QCOMPARE(row->spacing(), 6);
        QCOMPARE(row->contentsMargins(), QMargins(11, 11, 11, 11));
        QCOMPARE(row->count(), 3);
        checkSpacer(row->itemAt(0), QSize(40, 20), Qt::Horizontal);
        QCOMPARE(row->itemAt(1)->widget(), find<QLabel>("UserText"));
        checkSpacer(row->itemAt(2), QSize(40, 20), Qt::Horizontal);
    }

    void theUserStandsInAGrid()
    {
        const auto* group = find<QGroupBox>("groupBox_2");
        QCOMPARE(group->title(), QStringLiteral("User Confirm"));
        QVERIFY(group->isFlat());
        auto* grid = qobject_cast<QGridLayout*>(group->layout());
        QVERIFY(grid);
        QCOMPARE(grid->objectName(), QStringLiteral("gridLayout"));
        QCOMPARE(grid->horizontalSpacing(), 6);
        QCOMPARE(grid->verticalSpacing(), 6);
        QCOMPARE(grid->contentsMargins(), QMargins(11, 11, 11, 11));
        QCOMPARE(grid->itemAtPosition(0, 0)->widget(), find<QLabel>("label_2"));
        QCOMPARE(grid->itemAtPosition(0, 1)->widget(), user());
        QCOMPARE(grid->itemAtPosition(1, 0)->widget(), find<QLabel>("label_3"));
        QCOMPARE(grid->itemAtPosition(1, 1)->widget(), password());
        for (const int row : {0, 1})
            checkSpacer(grid->itemAtPosition(row, 2), QSize(40, 20), Qt::Horizontal);
        QCOMPARE(find<QLabel>("label_2")->text(), QStringLiteral("User :"));
        QCOMPARE(find<QLabel>("label_3")->text(), QStringLiteral("Password :"));
        for (const char* label : {"label_2", "label_3"})
            QCOMPARE(find<QLabel>(label)->alignment(), Qt::AlignRight | Qt::AlignTrailing | Qt::AlignVCenter);
        QVERIFY(user()->isReadOnly());
        QCOMPARE(password()->echoMode(), QLineEdit::Password);
        QVERIFY(!password()->isReadOnly());
    }

    void theCommandIsWhiteOnBlack()
    {
        auto* label = find<QLabel>("UserText");
        QCOMPARE(label->font().family(), QStringLiteral("\uad74\ub9bc"));
        checkCommandLabel(*label);
        m_dialog->show();
        checkCommandLabel(*label); // polished by its style sheet too
        QVERIFY(pixelsOf(*label, Qt::white) > 20);
        QVERIFY(pixelsOf(*label, Qt::black) > label->width() * label->height() / 2);
        label->setEnabled(false);
        QCOMPARE(pixelsOf(*label, Qt::white), 0);
        QVERIFY(pixelsOf(*label, QColor(120, 120, 120)) > 20);
    }

    void aLongCommandIsShownWhole()
    {
        const QString text = QStringLiteral("Substation 42, bay 7, breaker CB-101 : OPEN, then earth, ").repeated(3);
        m_dialog = std::make_unique<UserConfirmDialog>(nullptr, &m_core, text, lee);
        m_dialog->show();
        const auto* label = find<QLabel>("UserText");
        QCOMPARE(label->text(), text);
        QVERIFY(label->width() >= label->fontMetrics().horizontalAdvance(text));
        QVERIFY(label->height() < 2 * label->fontMetrics().height());
    }

    void everyTextIsLookedUpUnderTheClass()
    {
        const MarkingTranslator translator;
        const UserConfirmDialog dialog(nullptr, &m_core, command, lee);
        const auto textOf = [&dialog](const char* name, const char* property) {
            return dialog.findChild<QWidget*>(QLatin1String(name))->property(property).toString();
        };
        QCOMPARE(dialog.windowTitle(), QStringLiteral("UserConfirmDialog::User Confirm"));
        QCOMPARE(textOf("groupBox", "title"), QStringLiteral("UserConfirmDialog::Command"));
        QCOMPARE(textOf("groupBox_2", "title"), QStringLiteral("UserConfirmDialog::User Confirm"));
        QCOMPARE(textOf("label_2", "text"), QStringLiteral("UserConfirmDialog::User :"));
        QCOMPARE(textOf("label_3", "text"), QStringLiteral("UserConfirmDialog::Password :"));
        QVERIFY(translator.translations.contains(QStringLiteral("UserConfirmDialog::.........")));
        m_users->refusal = QStringLiteral("no");
        const QList<ShownBox> boxes = boxesDuring([this] { m_dialog->slotOk(); });
        QCOMPARE(boxes.first().title, QStringLiteral("UserConfirmDialog::Failed"));
        QCOMPARE(boxes.first().text, QStringLiteral("no"));
        QCOMPARE(translatedFromUtf8<UserConfirmDialog>("x"), QStringLiteral("UserConfirmDialog::x"));
    }

    void itHasOneSlot()
    {
        const QMetaObject& meta = UserConfirmDialog::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("slotOk()"));
        QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Slot);
    }

    void itShowsTheUserAndTheCommandAndWaitsForThePassword()
    {
        QCOMPARE(user()->text(), lee);
        QCOMPARE(find<QLabel>("UserText")->text(), command);
        QCOMPARE(m_dialog->focusWidget(), password());
        m_dialog->show();
        QTRY_VERIFY(password()->hasFocus());
    }

    void noProjectIsAskedForSecurity()
    {
        QVERIFY(!m_core.project);
        QVERIFY(user()->isEnabled() && password()->isEnabled());
        password()->setText(QStringLiteral("l1"));
        m_dialog->slotOk();
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    }

    void theRightPasswordAccepts()
    {
        const QSignalSpy accepted(m_dialog.get(), &QDialog::accepted);
        const QList<ShownBox> boxes = boxesDuring([this] {
            const int result = resultOf(*m_dialog, [this] {
                QVERIFY(m_dialog->isModal());
                QTest::keyClicks(password(), QStringLiteral("l1"));
                click(*m_dialog, QDialogButtonBox::Ok);
            });
            QCOMPARE(result, int(QDialog::Accepted));
        });
        QCOMPARE(boxes.size(), 0);
        QCOMPARE(accepted.size(), 1);
        QCOMPARE(m_users->asked, (Asked{{lee, QStringLiteral("l1")}}));
        QCOMPARE(m_users->givenMessages, QStringList{QString()});
    }

    void thePasswordOfWhoIsLoggedOnIsAnothers()
    {
        m_dialog->show();
        password()->setText(QStringLiteral("k1"));
        QCOMPARE(boxesDuring([this] { click(*m_dialog, QDialogButtonBox::Ok); }).size(), 1);
        QVERIFY(m_dialog->isVisible());
    }

    void theHostSaysWhyAPasswordIsWrong_data()
    {
        QTest::addColumn<QString>("message");
        QTest::newRow("a sentence") << QStringLiteral("lee may not approve: locked until 12:00.");
        QTest::newRow("Korean, in two lines") << QStringLiteral("\uc554\ud638\n\uc624\ub958");
        QTest::newRow("places of a template") << QStringLiteral("%1 & %2");
        QTest::newRow("nothing") << QString();
    }
    void theHostSaysWhyAPasswordIsWrong()
    {
        QFETCH(QString, message);
        m_users->refusal = message;
        m_dialog->show();
        password()->setText(QStringLiteral("wrong"));
        const QList<ShownBox> boxes = boxesDuring([this] { click(*m_dialog, QDialogButtonBox::Ok); });
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().parent, m_dialog.get());
        QCOMPARE(boxes.first().title, QStringLiteral("Failed"));
        QCOMPARE(boxes.first().text, message);
        QCOMPARE(boxes.first().icon, QMessageBox::Warning);
        QCOMPARE(boxes.first().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(password()->text(), QStringLiteral("wrong"));
    }

    void eachWrongPasswordIsSaidAndNoneAccepts()
    {
        const QSignalSpy finished(m_dialog.get(), &QDialog::finished);
        m_users->refusal = QStringLiteral("no");
        m_dialog->show();
        for (int i = 0; i < 20; ++i) {
            password()->setText(QString::number(i));
            QCOMPARE(boxesDuring([this] { click(*m_dialog, QDialogButtonBox::Ok); }).size(), 1);
        }
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(finished.size(), 0);
        QCOMPARE(m_users->asked.size(), 20);
        QCOMPARE(m_users->givenMessages.count(QString()), 20); // each time an empty one to write to
    }

    void givingUpChecksNothing_data()
    {
        QTest::addColumn<std::function<void(QDialog&)>>("giveUp");
        using GiveUp = std::function<void(QDialog&)>;
        QTest::newRow("Cancel") << GiveUp([](QDialog& dialog) { click(dialog, QDialogButtonBox::Cancel); });
        QTest::newRow("the window's close button") << GiveUp([](QDialog& dialog) { dialog.close(); });
        QTest::newRow("Escape") << GiveUp([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    }
    void givingUpChecksNothing()
    {
        QFETCH(std::function<void(QDialog&)>, giveUp);
        password()->setText(QStringLiteral("l1"));
        QCOMPARE(resultOf(*m_dialog, [&] { giveUp(*m_dialog); }), int(QDialog::Rejected));
        QCOMPARE(m_users->asked, Asked());
    }

private:
    template <typename Widget>
    Widget* find(const char* name) const
    {
        return m_dialog->findChild<Widget*>(QLatin1String(name));
    }
    QLineEdit* user() const { return find<QLineEdit>("id"); }
    QLineEdit* password() const { return find<QLineEdit>("password"); }

    std::unique_ptr<TestUsers> m_users;
    TestCore m_core;
    std::unique_ptr<UserConfirmDialog> m_dialog;
};

QTEST_MAIN(tst_UserConfirmDialog)
#include "tst_userconfirmdialog.moc"

#include "scada/widgets/controlconfirm.h"
#include "tests/scada/confirmedcommands.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/narrowstyle.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/testcore.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QVBoxLayout>

#include <functional>
#include <memory>

using Asked = QList<QPair<QString, QString>>;

Q_DECLARE_METATYPE(std::function<void(QDialog&)>)

namespace {

const QString command = QStringLiteral("CB-101 : OPEN");

Asked askedOfKim(const QStringList& passwords)
{
    Asked asked;
    for (const QString& password : passwords)
        asked.append({QStringLiteral("kim"), password});
    return asked;
}

} // namespace

class tst_ControlConfirm : public QObject
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
        m_project.isSecured = true;
        m_core.users = m_users.get();
        m_core.project = &m_project;
    }
    void cleanup() { m_dialog.reset(); }

    void theFormIsNamedTitledAndSized()
    {
        QWidget parent;
        const ControlConfirm dialog(&parent, &m_core, command);
        QCOMPARE(dialog.parentWidget(), &parent);
        QCOMPARE(dialog.objectName(), QStringLiteral("ControlConfirm"));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Confirm Control"));
        QCOMPARE(dialog.size(), QSize(278, 193));
        QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
        QCOMPARE(dialog.windowType(), Qt::Dialog);
        QVERIFY(dialog.font().styleStrategy() & QFont::PreferAntialias);
    }

    void theFormsRowsStandAsDesigned()
    {
        make();
        auto* rows = qobject_cast<QVBoxLayout*>(m_dialog->layout());
        QVERIFY(rows);
        QCOMPARE(rows->objectName(), QStringLiteral("verticalLayout"));
        QCOMPARE(rows->spacing(), 6);
        QCOMPARE(rows->contentsMargins(), QMargins(11, 11, 11, 4));
        QCOMPARE(rows->count(), 5);
        const QStringList names = {QStringLiteral("groupBox"), QStringLiteral("groupBox_2"), QStringLiteral("line"),
                                   QStringLiteral("buttonBox")};
        for (int row = 0; row < names.size(); ++row)
            QCOMPARE(rows->itemAt(row)->widget()->objectName(), names[row]);
        checkSpacer(rows->itemAt(4), QSize(20, 40), Qt::Vertical);

        auto* line = qobject_cast<QFrame*>(rows->itemAt(2)->widget());
        QVERIFY(line);
        QCOMPARE(line->frameShape(), QFrame::HLine);
        QCOMPARE(line->frameShadow(), QFrame::Sunken);
        QCOMPARE(find<QDialogButtonBox>("buttonBox")->standardButtons(),
                 QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    }

    void theCommandStandsBetweenSpacers()
    {
        make();
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
        QCOMPARE(row->itemAt(1)->widget(), find<QLabel>("value"));
        checkSpacer(row->itemAt(2), QSize(40, 20), Qt::Horizontal);
    }

    void theUserStandsInAGrid()
    {
        make();
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
        make();
        const auto* label = find<QLabel>("value");
        checkCommandLabel(*label);
        m_dialog->show();
        checkCommandLabel(*label); // polished by its style sheet too
        QVERIFY(pixelsOf(*find<QLabel>("value"), Qt::white) > 20);
        QVERIFY(pixelsOf(*find<QLabel>("value"), Qt::black) > label->width() * label->height() / 2);
        find<QLabel>("value")->setEnabled(false);
        QCOMPARE(pixelsOf(*find<QLabel>("value"), Qt::white), 0);
        QVERIFY(pixelsOf(*find<QLabel>("value"), QColor(120, 120, 120)) > 20);
    }

    void aLongCommandIsShownWhole()
    {
        const QString text = QStringLiteral("Substation 42, bay 7, breaker CB-101 : OPEN, then earth, ").repeated(3);
        m_dialog = std::make_unique<ControlConfirm>(nullptr, &m_core, text);
        m_dialog->show();
        const auto* label = find<QLabel>("value");
        QCOMPARE(label->text(), text);
        QVERIFY(label->width() >= label->fontMetrics().horizontalAdvance(text));
        QVERIFY(label->height() < 2 * label->fontMetrics().height());
    }

    void everyTextIsLookedUpUnderTheClass()
    {
        const MarkingTranslator translator;
        make();
        QCOMPARE(m_dialog->windowTitle(), QStringLiteral("ControlConfirm::Confirm Control"));
        QCOMPARE(find<QGroupBox>("groupBox")->title(), QStringLiteral("ControlConfirm::Command"));
        QCOMPARE(find<QGroupBox>("groupBox_2")->title(), QStringLiteral("ControlConfirm::User Confirm"));
        QCOMPARE(find<QLabel>("label_2")->text(), QStringLiteral("ControlConfirm::User :"));
        QCOMPARE(find<QLabel>("label_3")->text(), QStringLiteral("ControlConfirm::Password :"));
        QVERIFY(translator.translations.contains(QStringLiteral("ControlConfirm::.........")));
        const QList<ShownBox> boxes = boxesDuring([this] { m_dialog->slotOk(); });
        QCOMPARE(boxes.first().title, QStringLiteral("ControlConfirm::Failed"));
        QCOMPARE(boxes.first().text, QStringLiteral("ControlConfirm::Invaild Password"));
        QCOMPARE(translatedFromUtf8<ControlConfirm>("x"), QStringLiteral("ControlConfirm::x"));
    }

    void itHasOneSlot()
    {
        const QMetaObject& meta = ControlConfirm::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("slotOk()"));
        QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Slot);
    }

    void itShowsWhoIsLoggedOnAndTheCommand()
    {
        make();
        QCOMPARE(user()->text(), QStringLiteral("kim"));
        QCOMPARE(find<QLabel>("value")->text(), command);
        QCOMPARE(password()->text(), QString());
        QVERIFY(user()->isEnabled() && password()->isEnabled());
        QCOMPARE(m_users->asked, Asked());
    }

    void theRightPasswordAccepts()
    {
        make();
        const QSignalSpy accepted(m_dialog.get(), &QDialog::accepted);
        const QList<ShownBox> boxes = boxesDuring([this] {
            const int result = resultOf(*m_dialog, [this] {
                QVERIFY(m_dialog->isModal());
                QTest::keyClicks(password(), QStringLiteral("k1"));
                click(*m_dialog, QDialogButtonBox::Ok);
            });
            QCOMPARE(result, int(QDialog::Accepted));
        });
        QCOMPARE(boxes.size(), 0);
        QCOMPARE(accepted.size(), 1);
        QCOMPARE(m_users->asked, askedOfKim({QStringLiteral("k1")}));
    }

    void returnIsOk()
    {
        make();
        const int result = resultOf(*m_dialog, [this] {
            QTest::keyClicks(password(), QStringLiteral("k1"));
            QTest::keyClick(password(), Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Accepted));
    }

    void aWrongPasswordIsSaidAndKept()
    {
        make();
        m_dialog->show();
        const QString typed = QStringLiteral(" K1 \uc554 ");
        password()->setText(typed);
        const QList<ShownBox> boxes = boxesDuring([this] { click(*m_dialog, QDialogButtonBox::Ok); });
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().parent, m_dialog.get());
        QCOMPARE(boxes.first().title, QStringLiteral("Failed"));
        QCOMPARE(boxes.first().text, QStringLiteral("Invaild Password"));
        QCOMPARE(boxes.first().icon, QMessageBox::Warning);
        QCOMPARE(boxes.first().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(password()->text(), typed);
        QCOMPARE(m_users->asked, askedOfKim({typed}));
    }

    void noPasswordIsAWrongOne()
    {
        make();
        m_dialog->show();
        QCOMPARE(boxesDuring([this] { click(*m_dialog, QDialogButtonBox::Ok); }).size(), 1);
        QVERIFY(m_dialog->isVisible());
    }

    void eachWrongPasswordIsSaidAndNoneAccepts()
    {
        make();
        const QSignalSpy finished(m_dialog.get(), &QDialog::finished);
        m_dialog->show();
        QStringList tried;
        for (int i = 0; i < 20; ++i) {
            tried.append(QString::number(i));
            password()->setText(tried.last());
            QCOMPARE(boxesDuring([this] { click(*m_dialog, QDialogButtonBox::Ok); }).size(), 1);
        }
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(finished.size(), 0);
        QCOMPARE(m_users->asked, askedOfKim(tried));
        password()->setText(QStringLiteral("k1"));
        click(*m_dialog, QDialogButtonBox::Ok);
        QCOMPARE(finished.size(), 1);
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
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
        for (const bool isSecured : {true, false}) {
            m_project.isSecured = isSecured;
            make();
            password()->setText(QStringLiteral("k1"));
            QCOMPARE(resultOf(*m_dialog, [&] { giveUp(*m_dialog); }), int(QDialog::Rejected));
            QCOMPARE(m_users->asked, Asked());
        }
    }

    void withoutSecurityNothingIsAskedFor()
    {
        m_project.isSecured = false;
        m_users->passwords[QStringLiteral("kim")] = QString();
        make();
        QVERIFY(!user()->isEnabled() && !password()->isEnabled());
        const QSignalSpy accepted(m_dialog.get(), &QDialog::accepted);
        const QList<ShownBox> boxes = boxesDuring([this] {
            QCOMPARE(resultOf(*m_dialog, [this] { click(*m_dialog, QDialogButtonBox::Ok); }), int(QDialog::Accepted));
        });
        QCOMPARE(boxes.size(), 0);
        QCOMPARE(accepted.size(), 2); // kept: by the project, and by the check that follows all the same
        QCOMPARE(m_users->asked, askedOfKim({QString()}));
    }

    void withoutSecurityAHostThatRefusesHasItSaidOnce() // kept
    {
        m_project.isSecured = false;
        make();
        const QList<ShownBox> boxes = boxesDuring([this] {
            QCOMPARE(resultOf(*m_dialog, [this] { click(*m_dialog, QDialogButtonBox::Ok); }), int(QDialog::Accepted));
        });
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().text, QStringLiteral("Invaild Password"));
        QCOMPARE(m_users->asked, askedOfKim({QString()}));
    }

    void securityIsAskedForAnewAtOk()
    {
        m_project.isSecured = false;
        make();
        m_dialog->show();
        m_project.isSecured = true;
        QCOMPARE(boxesDuring([this] { click(*m_dialog, QDialogButtonBox::Ok); }).size(), 1);
        QVERIFY(m_dialog->isVisible());
        m_project.isSecured = false;
        boxesDuring([this] { click(*m_dialog, QDialogButtonBox::Ok); });
        QVERIFY(!m_dialog->isVisible());
    }

private:
    void make() { m_dialog = std::make_unique<ControlConfirm>(nullptr, &m_core, command); }
    template <typename Widget>
    Widget* find(const char* name) const
    {
        return m_dialog->findChild<Widget*>(QLatin1String(name));
    }
    QLineEdit* user() const { return find<QLineEdit>("id"); }
    QLineEdit* password() const { return find<QLineEdit>("password"); }

    std::unique_ptr<TestUsers> m_users;
    SecuredProject m_project;
    TestCore m_core;
    std::unique_ptr<ControlConfirm> m_dialog;
};

QTEST_MAIN(tst_ControlConfirm)
#include "tst_controlconfirm.moc"

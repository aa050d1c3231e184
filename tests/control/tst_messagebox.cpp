// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "messagebox.h"
#include "usersim.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using VandrelControl::MessageBox;

class TestMessageBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void responderReceivesRequest();
    void yesNoFollowsAnswer();
    void scopedResponderRestoresPrevious();
    void emptyResponderRestoresRealBox();
    void realBoxHasDutchButtons_data();
    void realBoxHasDutchButtons();
};

void TestMessageBox::responderReceivesRequest()
{
    QList<MessageBox::Request> seen;
    MessageBox::ScopedResponder scope([&](const MessageBox::Request &r) {
        seen.append(r);
        return MessageBox::Answer::Ok;
    });
    MessageBox::ok(nullptr, QStringLiteral("Voer een geldig bedrag in."), QStringLiteral("Ongeldige invoer"));
    MessageBox::yesNo(nullptr, QStringLiteral("Doorgaan?"), QStringLiteral("LET OP!"));
    MessageBox::ok(nullptr, QStringLiteral("Klaar."), QStringLiteral("Info"), MessageBox::Icon::Information);
    QCOMPARE(seen.size(), 3);
    QCOMPARE(seen[0].title, QStringLiteral("Ongeldige invoer"));
    QCOMPARE(seen[0].text, QStringLiteral("Voer een geldig bedrag in."));
    QCOMPARE(seen[0].icon, MessageBox::Icon::Exclamation);
    QCOMPARE(seen[0].buttons, MessageBox::Buttons::Ok);
    QCOMPARE(seen[1].title, QStringLiteral("LET OP!"));
    QCOMPARE(seen[1].icon, MessageBox::Icon::Question);
    QCOMPARE(seen[1].buttons, MessageBox::Buttons::YesNo);
    QCOMPARE(seen[2].icon, MessageBox::Icon::Information);
}

void TestMessageBox::yesNoFollowsAnswer()
{
    TestSupport::MessageRecorder recorder;
    recorder.answerNext(MessageBox::Answer::No);
    QVERIFY(!MessageBox::yesNo(nullptr, QStringLiteral("Ongelijke data accepteren?"), QStringLiteral("Ongelijke data")));
    QVERIFY(MessageBox::yesNo(nullptr, QStringLiteral("Ongelijke data accepteren?"), QStringLiteral("Ongelijke data")));
    QCOMPARE(recorder.count(), 2);
    QCOMPARE(recorder.lastTitle(), QStringLiteral("Ongelijke data"));
}

void TestMessageBox::scopedResponderRestoresPrevious()
{
    QVERIFY(!MessageBox::hasResponder());
    QStringList log;
    {
        MessageBox::ScopedResponder outer([&](const MessageBox::Request &r) {
            log << QStringLiteral("outer:") + r.text;
            return MessageBox::Answer::Yes;
        });
        QVERIFY(MessageBox::hasResponder());
        {
            MessageBox::ScopedResponder inner([&](const MessageBox::Request &r) {
                log << QStringLiteral("inner:") + r.text;
                return MessageBox::Answer::No;
            });
            QCOMPARE(MessageBox::show(nullptr, {QStringLiteral("t"), QStringLiteral("a"),
                                                MessageBox::Icon::Question, MessageBox::Buttons::YesNo}),
                     MessageBox::Answer::No);
        }
        QCOMPARE(MessageBox::show(nullptr, {QStringLiteral("t"), QStringLiteral("b"),
                                            MessageBox::Icon::Question, MessageBox::Buttons::YesNo}),
                 MessageBox::Answer::Yes);
    }
    QVERIFY(!MessageBox::hasResponder());
    QCOMPARE(log, (QStringList{QStringLiteral("inner:a"), QStringLiteral("outer:b")}));
}

void TestMessageBox::emptyResponderRestoresRealBox()
{
    MessageBox::setResponder([](const MessageBox::Request &) { return MessageBox::Answer::Ok; });
    QVERIFY(MessageBox::hasResponder());
    MessageBox::setResponder({});
    QVERIFY(!MessageBox::hasResponder());
}

void TestMessageBox::realBoxHasDutchButtons_data()
{
    QTest::addColumn<bool>("question");
    QTest::addColumn<QString>("press");
    QTest::addColumn<QStringList>("buttons");
    QTest::addColumn<int>("answer");
    QTest::newRow("ok") << false << "OK" << QStringList{QStringLiteral("OK")} << int(MessageBox::Answer::Ok);
    QTest::newRow("yes") << true << "Ja" << QStringList{QStringLiteral("Ja"), QStringLiteral("Nee")}
                         << int(MessageBox::Answer::Yes);
    QTest::newRow("no") << true << "Nee" << QStringList{QStringLiteral("Ja"), QStringLiteral("Nee")}
                        << int(MessageBox::Answer::No);
}

void TestMessageBox::realBoxHasDutchButtons()
{
    QFETCH(bool, question);
    QFETCH(QString, press);
    QFETCH(QStringList, buttons);
    QFETCH(int, answer);
    QVERIFY(!MessageBox::hasResponder());

    QWidget parent;
    QVERIFY(TestSupport::showActive(&parent));
    QString title, text;
    QStringList shown;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool pressed = false;
    // Answers the real modal box the way a user does: reads it and clicks a button.
    QTimer poll;
    poll.setInterval(10);
    connect(&poll, &QTimer::timeout, this, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box || pressed)
            return;
        title = box->windowTitle();
        text = box->text();
        icon = box->icon();
        for (QAbstractButton *b : box->buttons())
            shown << b->text();
        for (QAbstractButton *b : box->buttons()) {
            if (b->text() == press) {
                pressed = true;
                b->click();
            }
        }
        if (!pressed)
            box->reject();
    });
    poll.start();
    const auto request = MessageBox::Request{QStringLiteral("LET OP!"), QStringLiteral("Weet u het zeker?"),
                                             question ? MessageBox::Icon::Question : MessageBox::Icon::Exclamation,
                                             question ? MessageBox::Buttons::YesNo : MessageBox::Buttons::Ok};
    const MessageBox::Answer got = MessageBox::show(&parent, request);
    poll.stop();
    QVERIFY(pressed);
    QCOMPARE(title, QStringLiteral("LET OP!"));
    QCOMPARE(text, QStringLiteral("Weet u het zeker?"));
    QCOMPARE(icon, question ? QMessageBox::Question : QMessageBox::Warning);
    shown.sort();
    buttons.sort();
    QCOMPARE(shown, buttons);
    QCOMPARE(int(got), answer);
}

QTEST_MAIN(TestMessageBox)
#include "tst_messagebox.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/room/RoomKeys.h"

#include <QTest>

using namespace lumbra;

Q_DECLARE_METATYPE(lumbra::RoomCommand)

class tst_RoomKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachKeyHasItsMeaning_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::addColumn<RoomCommand>("withEngine");
        QTest::addColumn<RoomCommand>("without");
        const auto row = [](const char* name, int key, int modifiers, const char* text, RoomCommand with,
                            RoomCommand without) {
            QTest::newRow(name) << key << modifiers << QString::fromUtf8(text) << with << without;
        };
        using enum RoomAction;
        const RoomCommand nothing;
        row("Escape", Qt::Key_Escape, 0, "\x1b", {close}, {close});
        row("Up", Qt::Key_Up, 0, "", {previous}, {previous});
        row("Down", Qt::Key_Down, 0, "", {next}, {next});
        row("Left", Qt::Key_Left, 0, "", {seek, -5}, {previous});
        row("Right", Qt::Key_Right, 0, "", {seek, 5}, {next});
        row("Shift and Left", Qt::Key_Left, Qt::SHIFT, "", {seek, -1}, {previous});
        row("Shift and Right", Qt::Key_Right, Qt::SHIFT, "", {seek, 1}, {next});
        row("Left of the number pad", Qt::Key_Left, Qt::KeypadModifier, "", {seek, -5}, {previous});
        row("Space", Qt::Key_Space, 0, " ", {playOrPause}, {close});
        row("Ctrl and C", Qt::Key_C, Qt::CTRL, "\x03", {copy}, {copy});
        row("S", Qt::Key_S, 0, "s", {star}, {star});
        row("Shift and S", Qt::Key_S, Qt::SHIFT, "S", {star}, {star});
        row("Alt and S, for a menu", Qt::Key_S, Qt::ALT, "s", nothing, nothing);
        row("Ctrl and S", Qt::Key_S, Qt::CTRL, "\x13", nothing, nothing);
        row("Meta and S", Qt::Key_S, Qt::META, "s", nothing, nothing);
        row("I", Qt::Key_I, 0, "i", {info}, {info});
        row("F", Qt::Key_F, 0, "f", {fullScreen}, {fullScreen});
        row("J", Qt::Key_J, 0, "j", {shuttle, -1}, nothing);
        row("K", Qt::Key_K, 0, "k", {shuttle, 0}, nothing);
        row("L", Qt::Key_L, 0, "l", {shuttle, 1}, nothing);
        row("comma", Qt::Key_Comma, 0, ",", {step, -1}, nothing);
        row("full stop", Qt::Key_Period, 0, ".", {step, 1}, nothing);
        row("M", Qt::Key_M, 0, "m", {mute}, nothing);
        row("0", Qt::Key_0, 0, "0", {jump, 0}, nothing);
        row("3", Qt::Key_3, 0, "3", {jump, 0.3}, nothing);
        row("9 of the number pad", Qt::Key_9, Qt::KeypadModifier, "9", {jump, 0.9}, nothing);
        row("a digit that is typed with Shift", Qt::Key_QuoteDbl, Qt::SHIFT, "3", {jump, 0.3}, nothing);
        row("a half, which is no integer", Qt::Key_onehalf, 0, "½", nothing, nothing);
        row("C alone", Qt::Key_C, 0, "c", nothing, nothing);
        row("Ctrl, Shift and C", Qt::Key_C, Qt::CTRL | Qt::SHIFT, "\x03", nothing, nothing);
        row("two characters", Qt::Key_unknown, 0, "ss", nothing, nothing);
        row("Shift alone", Qt::Key_Shift, Qt::SHIFT, "", nothing, nothing);
        row("Return", Qt::Key_Return, 0, "\r", nothing, nothing);
        row("Tab", Qt::Key_Tab, 0, "\t", nothing, nothing);
        row("a letter that lies elsewhere", Qt::Key_Semicolon, 0, "s", {star}, {star});
    }
    void eachKeyHasItsMeaning() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QString, text);
        QFETCH(RoomCommand, withEngine);
        QFETCH(RoomCommand, without);
        QCOMPARE(commandFor(key, Qt::KeyboardModifiers(modifiers), text, true), withEngine);
        QCOMPARE(commandFor(key, Qt::KeyboardModifiers(modifiers), text, false), without);
    }

    void onlyWhatMovesGoesOnWhileAKeyIsHeld() {
        using enum RoomAction;
        for (const RoomAction action : {previous, next, seek, step})
            QVERIFY(repeats(action));
        for (const RoomAction action : {ignored, close, playOrPause, copy, star, info, fullScreen, shuttle, mute, jump})
            QVERIFY(!repeats(action));
    }
};

QTEST_GUILESS_MAIN(tst_RoomKeys)
#include "tst_roomkeys.moc"

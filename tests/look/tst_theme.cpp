// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/QmlWindow.h"

#include <QColor>

#include <cmath>

using namespace lumbra;

namespace {

double luminance(const QColor& color) {
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

// What is seen of a colour that lies over another.
QColor onto(const QColor& over, const QColor& ground) {
    const double alpha = over.alphaF();
    const auto mix = [alpha](double above, double below) { return float(above * alpha + below * (1 - alpha)); };
    return QColor::fromRgbF(mix(over.redF(), ground.redF()), mix(over.greenF(), ground.greenF()),
                            mix(over.blueF(), ground.blueF()));
}

double contrast(const QColor& over, const QColor& ground) {
    const QColor seen = onto(over, ground);
    const double a = luminance(seen) + 0.05;
    const double b = luminance(ground) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

} // namespace

class tst_theme : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() {
        Look::prepareApplication();
        m_window = std::make_unique<QmlWindow>("property QtObject theme: Theme");
        m_theme = m_window->root()->property("theme").value<QObject*>();
        QVERIFY(m_theme);
    }
    void cleanup() { m_window.reset(); }

    void theAccentIsAmber();
    void textCanBeRead_data();
    void textCanBeRead();
    void textCanBeReadInEachState_data();
    void textCanBeReadInEachState();
    void whatMayBeMissedCanStillBeSeen();
    void highContrastStrengthensTextAndLines();
    void reducedMotionMakesEveryMovementInstant();
    void reducedMotionLeavesWaitsAlone();
    void theSpringStartsAtRestAndEndsThere();
    void theSpringSwingsOverByLittle();

private:
    QColor color(const char* name) { return m_theme->property(name).value<QColor>(); }
    int number(const char* name) { return m_theme->property(name).toInt(); }
    QList<double> curve();

    std::unique_ptr<QmlWindow> m_window;
    QObject* m_theme = nullptr;
};

QList<double> tst_theme::curve() {
    QList<double> numbers;
    for (const QVariant& value : m_theme->property("springCurve").toList())
        numbers.append(value.toDouble());
    return numbers;
}

// Comfort can be set before the first view: here, since nothing in the process has imported the module yet.
void tst_theme::initTestCase() {
    QQmlEngine engine;
    Look::prepareEngine(engine);
    Look::setAppearance(engine, true, true);
    QQmlComponent component(&engine);
    component.setData("import QtQml\nimport Lumbra.Look\nQtObject { property int quick: Theme.quick }", QUrl());
    const std::unique_ptr<QObject> object(component.create());
    QVERIFY(object);
    QCOMPARE(object->property("quick").toInt(), 0);
}

void tst_theme::theAccentIsAmber() {
    QCOMPARE(color("amber").toRgb(), QColor::fromRgbF(1.0f, 0.624f, 0.263f).toRgb());
}

void tst_theme::textCanBeRead_data() {
    QTest::addColumn<QByteArray>("ink");
    QTest::addColumn<QByteArray>("ground");
    for (const char* ink : {"text", "textSoft", "amber", "danger"})
        for (const char* ground : {"window", "pane", "raised"})
            QTest::addRow("%s on %s", ink, ground) << QByteArray(ink) << QByteArray(ground);
    QTest::newRow("text on amber") << QByteArray("amberInk") << QByteArray("amber");
}

void tst_theme::textCanBeRead() {
    QFETCH(QByteArray, ink);
    QFETCH(QByteArray, ground);
    QVERIFY(contrast(color(ink), color(ground)) >= 4.5);
}

// Of controls under the pointer, pressed, selected: each ink that stands on such a bed, on every surface.
void tst_theme::textCanBeReadInEachState_data() {
    QTest::addColumn<QByteArray>("ink");
    QTest::addColumn<QByteArray>("bed");
    const QList<std::pair<const char*, QList<const char*>>> beds{
        {"text", {"hover", "press", "menuHover", "control", "controlHover", "controlPress", "amberSoft"}},
        {"textSoft", {"hover", "press", "menuHover", "control", "controlHover", "controlPress", "amberSoft"}},
        {"amber", {"hover", "press", "amberSoft"}},
        {"danger", {"dangerSoft", "dangerHover", "dangerPress"}},
        {"amberInk", {"amber", "amberHover", "amberPress"}}};
    for (const auto& [ink, all] : beds)
        for (const char* bed : all)
            QTest::addRow("%s on %s", ink, bed) << QByteArray(ink) << QByteArray(bed);
}

void tst_theme::textCanBeReadInEachState() {
    QFETCH(QByteArray, ink);
    QFETCH(QByteArray, bed);
    for (const bool strong : {false, true}) {
        Look::setAppearance(m_window->engine(), strong, false);
        for (const char* ground : {"window", "pane", "raised"})
            QVERIFY2(contrast(color(ink), onto(color(bed), color(ground))) >= 4.5, ground);
    }
}

void tst_theme::whatMayBeMissedCanStillBeSeen() {
    for (const char* ground : {"window", "pane", "raised"}) {
        for (const char* bed : {"clear", "hover", "menuHover", "amberSoft"})
            QVERIFY2(contrast(color("textFaint"), onto(color(bed), color(ground))) >= 3, bed);
        QVERIFY2(contrast(color("amber"), color(ground)) >= 3, ground); // the ring of what has the keys
        Look::setAppearance(m_window->engine(), true, false);
        QVERIFY2(contrast(color("edge"), color(ground)) >= 3, ground);
        QVERIFY2(contrast(color("textFaint"), color(ground)) >= 7, ground);
        Look::setAppearance(m_window->engine(), false, false);
    }
}

void tst_theme::highContrastStrengthensTextAndLines() {
    Look::setAppearance(m_window->engine(), true, false);
    QCOMPARE(qRound(color("text").alphaF() * 100), 100);
    QCOMPARE(qRound(color("textSoft").alphaF() * 100), 92);
    QCOMPARE(qRound(color("textFaint").alphaF() * 100), 75);
    QCOMPARE(qRound(color("line").alphaF() * 100), 40);
    Look::setAppearance(m_window->engine(), false, false);
    QCOMPARE(qRound(color("line").alphaF() * 100), 8);
}

void tst_theme::reducedMotionMakesEveryMovementInstant() {
    for (const char* name : {"quick", "room", "glow", "spring", "pulse", "scroll"})
        QVERIFY2(number(name) > 0, name);
    Look::setAppearance(m_window->engine(), false, true);
    for (const char* name : {"quick", "room", "glow", "spring", "pulse", "scroll"})
        QCOMPARE(number(name), 0);
}

void tst_theme::reducedMotionLeavesWaitsAlone() {
    const int before = number("hintDelay");
    Look::setAppearance(m_window->engine(), false, true);
    QCOMPARE(number("hintDelay"), before);
}

void tst_theme::theSpringStartsAtRestAndEndsThere() {
    const QList<double> points = curve();
    QVERIFY(points.size() >= 6);
    QCOMPARE(points.size() % 6, 0);
    QVERIFY(points.size() / 6 <= 10); // more overrun a buffer of Qt 6.4
    QCOMPARE(points.at(points.size() - 2), 1.0);
    QCOMPARE(points.last(), 1.0);
    QVERIFY(qAbs(points.at(1)) < 1e-9); // no speed at the start
    const int settles = number("spring");
    QVERIFY(settles > 350 && settles < 700);
}

void tst_theme::theSpringSwingsOverByLittle() {
    // A damping of 0.8 overshoots by exp(-0.8 pi / 0.6), one and a half in a hundred.
    double highest = 0;
    const QList<double> points = curve();
    for (qsizetype i = 1; i < points.size(); i += 2)
        highest = std::max(highest, points.at(i));
    QVERIFY(highest > 1.01 && highest < 1.02);
}

QTEST_MAIN(tst_theme)
#include "tst_theme.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "Fonts.h"

#include <QFile>
#include <QFontDatabase>
#include <QStandardPaths>
#include <QtEndian>

#include <optional>

namespace lumbra {
namespace {

constexpr char inter[] = "Inter";
constexpr char interDigits[] = "Digit"; // as long as the name that it takes the place of

struct Table {
    qsizetype offset;
    qsizetype length;
};

// Every read is checked: a damaged font must end as "no such font".
template <typename Number>
std::optional<Number> numberAt(const QByteArray& bytes, qsizetype offset) {
    if (offset < 0 || offset > bytes.size() - qsizetype(sizeof(Number)))
        return std::nullopt;
    return qFromBigEndian<Number>(bytes.constData() + offset);
}

std::optional<Table> tableNamed(const QByteArray& font, const char* tag) {
    constexpr qsizetype header = 12;
    constexpr qsizetype record = 16;
    const int count = numberAt<quint16>(font, 4).value_or(0);
    for (int i = 0; i < count; ++i) {
        const qsizetype at = header + i * record;
        if (font.mid(at, 4) != tag)
            continue;
        const auto offset = numberAt<quint32>(font, at + 8);
        const auto length = numberAt<quint32>(font, at + 12);
        if (offset && length && qsizetype(*offset) + qsizetype(*length) <= font.size())
            return Table{qsizetype(*offset), qsizetype(*length)};
    }
    return std::nullopt;
}

QByteArray utf16(const QByteArray& latin) {
    QByteArray wide;
    for (const char letter : latin)
        wide.append('\0').append(letter);
    return wide;
}

QString makeDigits() {
    for (const char* weight : {"Regular", "SemiBold"}) {
        QFile file(
            QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                   QStringLiteral("fonts/opentype/inter/Inter-%1.otf").arg(QLatin1String(weight))));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QByteArray font = Fonts::withTabularDigits(file.readAll(), inter, interDigits);
        if (font.isEmpty() || QFontDatabase::addApplicationFontFromData(font) < 0)
            return {};
    }
    return QString::fromLatin1(interDigits);
}

} // namespace

QByteArray Fonts::withTabularDigits(QByteArray font, const QByteArray& family, const QByteArray& name) {
    const auto substitutions = tableNamed(font, "GSUB");
    const auto names = tableNamed(font, "name");
    if (!substitutions || !names || family.size() != name.size())
        return {};

    // The feature "tnum" takes the tag of one that every shaper applies unasked and that Latin fonts leave unused.
    const auto features = numberAt<quint16>(font, substitutions->offset + 6);
    if (!features)
        return {};
    const qsizetype list = substitutions->offset + *features;
    const int count = numberAt<quint16>(font, list).value_or(0);
    bool found = false;
    for (int i = 0; i < count; ++i) {
        const qsizetype at = list + 2 + i * 6;
        if (font.mid(at, 4) == "rclt")
            return {};
        if (font.mid(at, 4) == "tnum") {
            font.replace(at, 4, "rclt");
            found = true;
        }
    }
    if (!found)
        return {};

    QByteArray text = font.mid(names->offset, names->length);
    text.replace(utf16(family), utf16(name)).replace(family, name);
    return font.replace(names->offset, names->length, text);
}

QString Fonts::text() {
    static const QString family = QFontDatabase::hasFamily(QString::fromLatin1(inter))
                                      ? QString::fromLatin1(inter)
                                      : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    return family;
}

QString Fonts::digits() {
    static const QString family = makeDigits();
    return family.isEmpty() ? text() : family;
}

} // namespace lumbra

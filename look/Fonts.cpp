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
constexpr char interText[] = "Plain"; // as long as the name that it takes the place of, and so the next
constexpr char interDigits[] = "Digit";

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

QString makeFamily(const char* name, Fonts::Digits digits) {
    for (const char* weight : {"Regular", "SemiBold"}) {
        QFile file(
            QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                   QStringLiteral("fonts/opentype/inter/Inter-%1.otf").arg(QLatin1String(weight))));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QByteArray font = Fonts::literal(file.readAll(), inter, name, digits);
        if (font.isEmpty() || QFontDatabase::addApplicationFontFromData(font) < 0)
            return {};
    }
    return QString::fromLatin1(name);
}

QString installedFamily() {
    return QFontDatabase::hasFamily(QString::fromLatin1(inter))
               ? QString::fromLatin1(inter)
               : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
}

} // namespace

QByteArray Fonts::literal(QByteArray font, const QByteArray& family, const QByteArray& name, Digits digits) {
    const auto substitutions = tableNamed(font, "GSUB");
    const auto names = tableNamed(font, "name");
    if (!substitutions || !names || family.size() != name.size())
        return {};

    // A feature is switched off by a tag that no shaper knows. It is switched on by the tag of one that every shaper
    // applies unasked and that Latin fonts leave unused.
    constexpr char unknown[] = "----", always[] = "rclt", tabular[] = "tnum", alternates[] = "calt";
    const auto features = numberAt<quint16>(font, substitutions->offset + 6);
    if (!features)
        return {};
    const qsizetype list = substitutions->offset + *features;
    const int count = numberAt<quint16>(font, list).value_or(0);
    bool isTabular = false;
    for (int i = 0; i < count; ++i) {
        const qsizetype at = list + 2 + i * 6;
        const QByteArray tag = font.mid(at, 4);
        if (tag == always)
            return {};
        if (tag == alternates) {
            font.replace(at, 4, unknown);
        } else if (tag == tabular && digits == Digits::tabular) {
            font.replace(at, 4, always);
            isTabular = true;
        }
    }
    if (digits == Digits::tabular && !isTabular)
        return {};

    QByteArray text = font.mid(names->offset, names->length);
    text.replace(utf16(family), utf16(name)).replace(family, name);
    return font.replace(names->offset, names->length, text);
}

QString Fonts::text() {
    static const QString family = [] {
        const QString made = makeFamily(interText, Digits::proportional);
        return made.isEmpty() ? installedFamily() : made;
    }();
    return family;
}

QString Fonts::digits() {
    static const QString family = makeFamily(interDigits, Digits::tabular);
    return family.isEmpty() ? text() : family;
}

} // namespace lumbra

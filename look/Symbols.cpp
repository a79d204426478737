// SPDX-License-Identifier: GPL-3.0-or-later
#include "Symbols.h"

#include <QCache>
#include <QDir>
#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>
#include <QSet>
#include <QStandardPaths>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace lumbra::Symbols {
namespace {

struct Glyph {
    std::u16string_view name;
    char16_t code;
};

// Sorted by name, since it is searched by halves.
constexpr std::array glyphs{
    Glyph{u"archivebox", 0xF03C},
    Glyph{u"arrow.clockwise", 0xF450},
    Glyph{u"arrow.left.arrow.right", 0xF4E1},
    Glyph{u"arrow.right", 0xF054},
    Glyph{u"arrow.turn.down.right", 0xF60D},
    Glyph{u"arrow.up", 0xF05D},
    Glyph{u"arrow.up.arrow.down", 0xF4E2},
    Glyph{u"arrow.up.forward.square", 0xF3CC},
    Glyph{u"arrow.up.left.and.arrow.down.right", 0xF616},
    Glyph{u"arrow.uturn.backward", 0xF54C},
    Glyph{u"backward.frame.fill", 0xF4D5},
    Glyph{u"checkmark", 0xF12C},
    Glyph{u"checkmark.circle.fill", 0xF5E0},
    Glyph{u"chevron.down", 0xF140},
    Glyph{u"chevron.left", 0xF141},
    Glyph{u"chevron.right", 0xF142},
    Glyph{u"chevron.up", 0xF143},
    Glyph{u"clock", 0xF150},
    Glyph{u"command", 0xF633},
    Glyph{u"cube", 0xF1A7},
    Glyph{u"doc", 0xF224},
    Glyph{u"doc.fill", 0xF214},
    Glyph{u"doc.on.doc", 0xF18F},
    Glyph{u"doc.on.doc.fill", 0xF18F},
    Glyph{u"doc.text.fill", 0xF219},
    Glyph{u"ellipsis", 0xF1D8},
    Glyph{u"exclamationmark.triangle.fill", 0xF026},
    Glyph{u"eye", 0xF208},
    Glyph{u"eye.slash", 0xF209},
    Glyph{u"film", 0xF230},
    Glyph{u"folder", 0xF256},
    Glyph{u"folder.fill", 0xF24B},
    Glyph{u"forward.frame.fill", 0xF4D7},
    Glyph{u"gearshape", 0xF493},
    Glyph{u"house", 0xF2DC},
    Glyph{u"info.circle", 0xF2FD},
    Glyph{u"keyboard", 0xF30C},
    Glyph{u"link", 0xF339},
    Glyph{u"list.bullet", 0xF279},
    Glyph{u"magnifyingglass", 0xF349},
    Glyph{u"minus", 0xF374},
    Glyph{u"music.note", 0xF387},
    Glyph{u"pause.circle", 0xF3E6},
    Glyph{u"pause.fill", 0xF3E4},
    Glyph{u"pencil", 0xF3EB},
    Glyph{u"pin.fill", 0xF403},
    Glyph{u"pin.slash", 0xF404},
    Glyph{u"play.circle", 0xF40D},
    Glyph{u"play.circle.fill", 0xF40C},
    Glyph{u"play.fill", 0xF40A},
    Glyph{u"plus", 0xF415},
    Glyph{u"repeat", 0xF456},
    Glyph{u"speaker.slash.fill", 0xF581},
    Glyph{u"speaker.wave.2.fill", 0xF57E},
    Glyph{u"square.and.arrow.down", 0xF1DA},
    Glyph{u"square.and.arrow.up", 0xF497},
    Glyph{u"square.stack.3d.up", 0xF328},
    Glyph{u"star", 0xF4D2},
    Glyph{u"star.fill", 0xF4CE},
    Glyph{u"star.slash", 0xF4D1},
    Glyph{u"tag", 0xF4FC},
    Glyph{u"terminal", 0xF18D},
    Glyph{u"textformat", 0xF284},
    Glyph{u"trash", 0xF1C0},
    Glyph{u"wand.and.stars", 0xF068},
    Glyph{u"xmark", 0xF156},
    Glyph{u"xmark.circle.fill", 0xF159},
};
static_assert(std::ranges::is_sorted(glyphs, {}, &Glyph::name));

const Glyph* glyphNamed(QStringView name) {
    const std::u16string_view key(name.utf16(), size_t(name.size()));
    const auto found = std::ranges::lower_bound(glyphs, key, {}, &Glyph::name);
    return found != glyphs.end() && found->name == key ? &*found : nullptr;
}

// The names of what we drew ourselves.
const QSet<QString>& drawings() {
    static const QSet<QString> all = [] {
        QSet<QString> found;
        const QStringList files = QDir(QStringLiteral(":/look/symbols")).entryList(QDir::Files);
        for (const QString& file : files)
            found.insert(file.chopped(qsizetype(strlen(".svg"))));
        return found;
    }();
    return all;
}

QString drawing(const QString& name) {
    return QLatin1String(":/look/symbols/") + name + QLatin1String(".svg");
}

const QRawFont& iconFont() {
    static const QRawFont font = [] {
        // The outlines are scaled, never hinted: the em is as large as the font's own grid.
        constexpr qreal em = 512;
        const QString file = QStandardPaths::locate(
            QStandardPaths::GenericDataLocation,
            QStringLiteral("fonts/truetype/materialdesignicons-webfont/materialdesignicons-webfont.ttf"));
        if (!file.isEmpty())
            return QRawFont(file, em, QFont::PreferNoHinting);
        QFont installed(QStringLiteral("Material Design Icons"));
        installed.setPixelSize(int(em));
        const QRawFont byFamily = QRawFont::fromFont(installed);
        if (byFamily.familyName() == installed.family())
            return byFamily;
        qWarning("The symbols need the font of the package fonts-materialdesignicons-webfont; dots stand for them.");
        return QRawFont();
    }();
    return font;
}

// The glyph's outline in the square of 24 units, or a dot.
QPainterPath outline(char16_t code) {
    constexpr qreal side = 24;
    const QRawFont& font = iconFont();
    const QString text{QChar(code)};
    const QList<quint32> indexes = font.isValid() ? font.glyphIndexesForString(text) : QList<quint32>();
    if (indexes.isEmpty() || indexes.first() == 0) {
        QPainterPath dot;
        dot.addEllipse(QPointF(side / 2, side / 2), side / 8, side / 8);
        return dot;
    }
    const qreal scale = side / font.pixelSize();
    // The font's em reaches from an eighth below the base line to seven eighths above it.
    return QTransform(scale, 0, 0, scale, 0, side * 7 / 8).map(font.pathForGlyph(indexes.first()));
}

QImage drawn(const QString& name, int pixels, const QColor& color) {
    QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    if (const Glyph* glyph = glyphNamed(name)) {
        const qreal scale = pixels / 24.0;
        painter.scale(scale, scale);
        painter.fillPath(outline(glyph->code), color);
        return picture;
    }
    QSvgRenderer(drawing(name)).render(&painter, QRectF(0, 0, pixels, pixels));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
    return picture;
}

} // namespace

QStringList names() {
    QStringList all;
    for (const Glyph& glyph : glyphs)
        all.append(QStringView(glyph.name.data(), qsizetype(glyph.name.size())).toString());
    all.append(drawings().values());
    all.sort();
    return all;
}

bool contains(const QString& name) {
    return glyphNamed(name) || drawings().contains(name);
}

bool fontFound() {
    return iconFont().isValid();
}

QImage image(const QString& name, int pixels, const QColor& color) {
    if (pixels <= 0 || !contains(name))
        return {};
    // The same few stand in hundreds of tiles, which all change their size in one frame.
    constexpr qsizetype bytes = 1'000'000;
    static QCache<std::pair<QString, std::pair<int, QRgb>>, QImage> recent(bytes);
    const std::pair key(name, std::pair(pixels, color.rgba()));
    if (const QImage* known = recent.object(key))
        return *known;
    const QImage picture = drawn(name, pixels, color);
    recent.insert(key, new QImage(picture), picture.sizeInBytes());
    return picture;
}

} // namespace lumbra::Symbols

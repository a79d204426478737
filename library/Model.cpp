// SPDX-License-Identifier: GPL-3.0-or-later
#include "Model.h"

#include "core/Stars.h"
#include "platform/FileFacts.h"
#include "platform/FileTypes.h"
#include "platform/NaturalOrder.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace lumbra {

namespace {

// In the order of the enumerations.
struct KindTexts {
    QLatin1String raw;
    QLatin1String plural;
};
constexpr std::array<KindTexts, allAssetKinds.size()> kindTexts{{
    {QLatin1String("image"), QLatin1String("Images")},
    {QLatin1String("video"), QLatin1String("Videos")},
    {QLatin1String("audio"), QLatin1String("Audio")},
    {QLatin1String("document"), QLatin1String("Documents")},
}};
constexpr std::array<QLatin1String, allSortOrders.size()> orderTexts{QLatin1String("newest"), QLatin1String("oldest"),
                                                                     QLatin1String("name"), QLatin1String("size")};

// Extensions of icons and cursors, which no one calls a picture.
constexpr std::array<std::string_view, 3> ignoredExtensions{"icns", "ico", "cur"};

constexpr std::array<std::string_view, 27> documentExtensions{
    "pdf", "txt",  "md",  "rtf", "docx", "doc",    "xlsx", "xls",    "csv",   "pptx", "key", "pages", "numbers", "srt",
    "vtt", "html", "zip", "psd", "ai",   "sketch", "fig",  "lottie", "blend", "usdz", "glb", "obj",   "fbx"};

template <typename List>
bool holds(const List& list, std::string_view text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

Assets sortedByName(Assets assets) {
    NaturalOrder::shared().sort(assets, [](const Asset& asset) { return asset.url.lastComponent(); });
    return assets;
}

QString firstCharacter(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    const qsizetype end = finder.toNextBoundary();
    return text.left(end < 0 ? text.size() : end);
}

} // namespace

QString rawValue(AssetKind kind) {
    return kindTexts[size_t(kind)].raw;
}

std::optional<AssetKind> assetKindFromRaw(QStringView raw) {
    for (const AssetKind kind : allAssetKinds)
        if (rawValue(kind) == raw)
            return kind;
    return std::nullopt;
}

QString pluralLabel(AssetKind kind) {
    return kindTexts[size_t(kind)].plural;
}

std::optional<AssetKind> assetKindOfName(std::string_view fileName) {
    const SmallExtension extension(fileName);
    const std::string_view key = extension.view();
    if (key.empty() || holds(ignoredExtensions, key))
        return std::nullopt;
    // Pictures come first: what the types call an image is one although it may stand among the documents too.
    const auto type = fileTypeOf(key);
    if (type == FileType::image)
        return AssetKind::image;
    if (type == FileType::movie || key == "webm" || key == "mkv")
        return AssetKind::video;
    if (type == FileType::audio)
        return AssetKind::audio;
    if (holds(documentExtensions, key))
        return AssetKind::document;
    return std::nullopt;
}

std::optional<AssetKind> assetKindOf(const Location& location) {
    return assetKindOfName(location.lastComponent());
}

std::optional<Asset> Asset::read(const Location& url) {
    const auto kind = assetKindOf(url);
    if (!kind)
        return std::nullopt;
    const auto facts = FileFacts::of(url);
    if (!facts || !facts->isRegularFile)
        return std::nullopt;
    return Asset{url, *kind, facts->size, facts->modified, Stars::read(url)};
}

size_t qHash(const Asset& asset, size_t seed) {
    return qHashMulti(seed, asset.url, quint8(asset.kind), asset.size, asset.modified.seconds,
                      asset.starred.value_or(Date::distantPast()).seconds);
}

QString rawValue(SortOrder order) {
    return orderTexts[size_t(order)];
}

std::optional<SortOrder> sortOrderFromRaw(QStringView raw) {
    for (const SortOrder order : allSortOrders)
        if (rawValue(order) == raw)
            return order;
    return std::nullopt;
}

Assets sorted(SortOrder order, Assets assets) {
    switch (order) {
    case SortOrder::newest:
        std::ranges::stable_sort(assets, std::greater<>(), &Asset::modified);
        break;
    case SortOrder::oldest:
        std::ranges::stable_sort(assets, std::less<>(), &Asset::modified);
        break;
    case SortOrder::name:
        return sortedByName(std::move(assets));
    case SortOrder::size:
        std::ranges::stable_sort(assets, std::greater<>(), &Asset::size);
        break;
    }
    return assets;
}

std::optional<Location> Place::folderUrl() const {
    if (const auto* url = std::get_if<Location>(&m_payload))
        return *url;
    return std::nullopt;
}

std::optional<QUuid> Place::groupId() const {
    if (const auto* id = std::get_if<QUuid>(&m_payload))
        return *id;
    return std::nullopt;
}

size_t qHash(const Place& place, size_t seed) {
    return qHashMulti(seed, quint8(place.which()), place.folderUrl().value_or(Location()),
                      place.groupId().value_or(QUuid()));
}

namespace Hue {

const std::array<Row, 10> all{{
    {u"Amber", {0.23f, 0.165f, 0.094f}, {1.0f, 0.7f, 0.36f}},
    {u"Teal", {0.075f, 0.196f, 0.184f}, {0.37f, 0.83f, 0.77f}},
    {u"Violet", {0.165f, 0.137f, 0.25f}, {0.71f, 0.61f, 1.0f}},
    {u"Sky", {0.09f, 0.172f, 0.25f}, {0.49f, 0.77f, 1.0f}},
    {u"Rose", {0.227f, 0.118f, 0.165f}, {1.0f, 0.56f, 0.69f}},
    {u"Lime", {0.153f, 0.2f, 0.102f}, {0.72f, 0.88f, 0.48f}},
    {u"Sand", {0.204f, 0.188f, 0.122f}, {0.9f, 0.81f, 0.64f}},
    {u"Periwinkle", {0.118f, 0.145f, 0.25f}, {0.62f, 0.71f, 1.0f}},
    {u"Coral", {0.19f, 0.137f, 0.15f}, {0.91f, 0.65f, 0.63f}},
    {u"Mint", {0.11f, 0.2f, 0.15f}, {0.56f, 0.85f, 0.66f}},
}};

int indexFor(const QString& name) {
    // Bernstein's hash, so that the colour depends on nothing but the name.
    quint32 hash = 5381;
    const QByteArray bytes = name.toLower().toUtf8();
    for (const char byte : bytes)
        hash = hash * 33 + quint8(byte);
    return int(hash % all.size());
}

} // namespace Hue

QString monogram(const QString& name) {
    static const QRegularExpression separators(QStringLiteral("[-_ .]"));
    static const QRegularExpression version(QStringLiteral("^v?\\d+$"),
                                            QRegularExpression::CaseInsensitiveOption
                                                | QRegularExpression::UseUnicodePropertiesOption);
    const QStringList pieces = name.split(separators, Qt::SkipEmptyParts);
    if (pieces.isEmpty())
        return QStringLiteral("?");
    const QString first = firstCharacter(pieces[0]).toUpper();
    if (pieces.size() == 1)
        return first;
    if (version.match(pieces[1]).hasMatch()) {
        const bool hasLetter = pieces[1].startsWith(u'v', Qt::CaseInsensitive);
        return first + firstCharacter(pieces[1].mid(hasLetter ? 1 : 0));
    }
    return first + firstCharacter(pieces[1]).toUpper();
}

} // namespace lumbra

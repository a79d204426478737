// The plain records that the whole system passes around: a file, its category, a top-level folder, where the user
// stands, how a list is ordered, and the stable colour and mark of a project.
//
// All are immutable values that know no store; copy them freely, on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Date.h"
#include "platform/Location.h"

#include <QList>
#include <QMetaType>
#include <QUuid>

#include <array>
#include <functional>
#include <optional>
#include <variant>

namespace lumbra {

enum class AssetKind : quint8 { image, video, audio, document };

inline constexpr std::array allAssetKinds{AssetKind::image, AssetKind::video, AssetKind::audio, AssetKind::document};

// "image", "video", "audio", "document": what preferences store.
QString rawValue(AssetKind kind);
std::optional<AssetKind> assetKindFromRaw(QStringView raw);

// "Images", "Videos", "Audio", "Documents": what chips and section heads show.
QString pluralLabel(AssetKind kind);

// The category of a file by its extension alone; absent for everything that is no asset.
std::optional<AssetKind> assetKindOf(const Location& location);
std::optional<AssetKind> assetKindOfName(std::string_view fileName);

// One media file of the index.
struct Asset {
    Location url;
    AssetKind kind = AssetKind::document;
    qint64 size = 0; // bytes; 0 if the file system does not tell
    Date modified = Date::distantPast();
    std::optional<Date> starred; // when it was starred

    bool isStarred() const { return starred.has_value(); }

    // Reads one file's facts and star from disk. Absent when the file has no kind, is not a regular file (a symbolic
    // link is none) or can't be examined. Safe on any thread.
    static std::optional<Asset> read(const Location& url);

    friend bool operator==(const Asset&, const Asset&) = default;
};

using Assets = QList<Asset>;

size_t qHash(const Asset& asset, size_t seed = 0);

enum class SortOrder : quint8 { newest, oldest, name, size };

inline constexpr std::array allSortOrders{SortOrder::newest, SortOrder::oldest, SortOrder::name, SortOrder::size};

QString rawValue(SortOrder order);
std::optional<SortOrder> sortOrderFromRaw(QStringView raw);

// A stable sort; equal keys keep the order in which they came. Safe on any thread.
Assets sorted(SortOrder order, Assets assets);

// One folder directly under the library root.
struct Project {
    QString name; // the entry's name under the root; the project's key in LibraryState
    Location url; // canonical: for a symbolic link the link's target
    std::optional<Location> repo;

    friend bool operator==(const Project&, const Project&) = default;
};

// Where the browser stands.
class Place {
public:
    enum class Case : quint8 { group, folder, starred, recent, tidy };

    static Place group(const QUuid& id) { return Place(Case::group, id); }
    static Place folder(const Location& url) { return Place(Case::folder, url); }
    static Place starred() { return Place(Case::starred, {}); }
    static Place recent() { return Place(Case::recent, {}); }
    static Place tidy() { return Place(Case::tidy, {}); }

    Place() : Place(recent()) {}

    Case which() const { return m_case; }
    bool is(Case which) const { return m_case == which; }

    // Absent unless the place is a folder, or a group.
    std::optional<Location> folderUrl() const;
    std::optional<QUuid> groupId() const;

    friend bool operator==(const Place&, const Place&) = default;

private:
    using Payload = std::variant<std::monostate, QUuid, Location>;
    Place(Case which, Payload payload) : m_case(which), m_payload(std::move(payload)) {}

    Case m_case;
    Payload m_payload;
};

size_t qHash(const Place& place, size_t seed = 0);

// A request to open the screening room.
struct PlayRequest {
    Asset asset;  // what to play first
    Assets order; // in which previous and next step

    friend bool operator==(const PlayRequest&, const PlayRequest&) = default;
};

// A transient message at the foot of the window.
struct Toast {
    QUuid id = QUuid::createUuid(); // new for each, so that a repeated text is a new toast
    QString text;
    bool starred = false; // for a star's confirmation: the state after the action
    std::optional<QString> symbol = {};
    std::function<void()> undo = {}; // if present, the toast offers a button that runs it

    friend bool operator==(const Toast& a, const Toast& b) { return a.id == b.id; }
};

// The ten colours that projects and groups may have; what is stored is an index into `all`.
namespace Hue {

struct Colour {
    float red, green, blue; // opaque sRGB, 0 to 1
};

struct Row {
    const char16_t* name;
    Colour background;
    Colour foreground;
};

extern const std::array<Row, 10> all;

// A name's own colour: the same on every machine, whatever the case of its letters.
int indexFor(const QString& name);

} // namespace Hue

// The mark on a project's badge: one or two characters.
QString monogram(const QString& name);

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::Asset)
Q_DECLARE_METATYPE(lumbra::Place)

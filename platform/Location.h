// Where something is on disk: an absolute path as a value, compared byte for byte.
//
// A location holds valid UTF-8 without a trailing slash (but for the root itself). A file whose name is not UTF-8 has
// no location; code that must carry such files along (copy, move, trash of their folder) works on the folder.
//
// The empty location is nowhere: nothing exists there, it has no children and nothing is inside it. A text that no path
// can be, since it holds a NUL or half a character, makes an empty location: a system call would read it up to the NUL
// and reach another file.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHashFunctions>
#include <QMetaType>
#include <QString>
#include <QUrl>

#include <compare>
#include <optional>
#include <string_view>

namespace lumbra {

class Location {
public:
    Location() = default;

    // Takes the path as given, but for trailing slashes, which are dropped. A relative path stays relative until
    // `canonical` resolves it against the working directory.
    explicit Location(QByteArray path);
    explicit Location(QStringView path);

    // Absent when the bytes, as the file system gave them, are not UTF-8 or hold a NUL.
    static std::optional<Location> fromFileSystem(std::string_view bytes);

    static Location home();

    // The path with a leading "~" or "~/" replaced by the home folder; any other text as it stands.
    static Location expandingTilde(QStringView path);

    bool isEmpty() const { return m_path.isEmpty(); }

    // The bytes that system calls take; NUL-terminated through constData().
    const QByteArray& path() const { return m_path; }
    std::string_view view() const { return {m_path.constData(), size_t(m_path.size())}; }
    QString toString() const { return QString::fromUtf8(m_path); }
    QUrl toUrl() const { return QUrl::fromLocalFile(toString()); }

    // Symbolic links resolved in the part of the path that exists, then made standard: no ".", no "..", no trailing
    // slash. Case is never folded. Asks the disk.
    Location canonical() const;

    // Both sides are made canonical first. A folder is inside itself.
    bool isInside(const Location& other) const;

    // True when this path equals `folder` or continues it after a "/"; compares texts, asks no disk.
    bool isAtOrBelow(const Location& folder) const;

    Location parent() const;
    std::string_view lastComponent() const;
    QString name() const;

    // What follows the last dot of the last component, without the dot; empty when there is none, when the dot is the
    // first or the last character. Not lower-cased.
    std::string_view extension() const;

    Location child(std::string_view name) const;
    Location child(QStringView name) const;

    bool exists() const;
    bool isFolder() const;

    // For people: the home folder shortened to "~".
    QString abbreviated() const;

    friend bool operator==(const Location& a, const Location& b) { return a.m_path == b.m_path; }
    friend std::strong_ordering operator<=>(const Location& a, const Location& b) { return a.view() <=> b.view(); }
    friend size_t qHash(const Location& location, size_t seed = 0) { return qHash(location.m_path, seed); }

private:
    QByteArray m_path;
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::Location)

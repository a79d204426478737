// What the tests of the resolver share: a library of two projects and one behind a link, its index, and what batches of
// events come to.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Resolver.h"
#include "library/Scanner.h"
#include "support/TestHome.h"

#include <QTest>

#include <filesystem>
#include <map>
#include <memory>

namespace lumbra {

class ResolvedLibrary {
protected:
    void makeLibrary() {
        m_home = std::make_unique<TestHome>();
        m_home->file("library/one/a.png");
        m_home->file("library/one/deep/b.mp4");
        m_home->file("library/one/deep/er/c.wav");
        m_home->file("library/two/d.png");
        m_home->file("elsewhere/e.png");
        m_library = m_home->path().child("library");
        m_one = m_library.child("one");
        m_outside = m_home->path().child("elsewhere");
        std::filesystem::create_directory_symlink(text(m_outside), text(m_library.child("linked")));
        m_roots = {m_outside, m_one, m_library.child("two")};
        m_index = walked();
        if (m_index.count() != 5)
            qFatal("the walk does not find the files");
    }
    void removeLibrary() { m_home.reset(); }

    static std::string text(const Location& location) { return std::string(location.view()); }

    AssetIndex::Changes resolve(const QList<FileEvent>& events, const AssetIndex& index) const {
        return Resolver::resolve(events, m_roots, KnownFolder(m_library), index);
    }
    AssetIndex::Changes resolve(const QList<FileEvent>& events) const { return resolve(events, m_index); }
    AssetIndex walked() const { return Scanner::index(m_roots, 1); }

    static QList<Location> pathsOf(const Assets& assets) {
        QList<Location> paths;
        for (const Asset& asset : assets)
            paths.append(asset.url);
        std::ranges::sort(paths);
        return paths;
    }
    static QList<Location> inOrder(QList<Location> paths) {
        std::ranges::sort(paths);
        return paths;
    }
    static std::map<Location, Asset> content(const AssetIndex& index) {
        std::map<Location, Asset> content;
        for (const auto& folder : index.folders())
            for (size_t i = 0; i < folder->size(); ++i)
                content[folder->assetAt(i).url] = folder->assetAt(i);
        return content;
    }

    std::unique_ptr<TestHome> m_home;
    Location m_library;
    Location m_one;     // a project in the library
    Location m_outside; // a project behind a link
    QList<Location> m_roots;
    AssetIndex m_index; // of all that was there at first
};

} // namespace lumbra

// What the tests of operations on projects stand on: an open library, and repositories that its projects may be tied
// to.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OpenLibrary.h"
#include "Repositories.h"

#include <memory>

namespace lumbra {

struct LibraryOfProjects {
    Location repository(const char* name) const {
        return madeRepository(m_library->outsideFolder(std::string("code/") + name));
    }

    QStringList names() const {
        QStringList names;
        const auto projects = (*m_library)->projects();
        for (const Project& project : projects)
            names.append(project.name);
        return names;
    }

    std::optional<Location> repoOf(const char* name) const { return m_library->project(name).repo; }

    TestHome m_home;
    std::unique_ptr<OpenLibrary> m_library;
};

} // namespace lumbra

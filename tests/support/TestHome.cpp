// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestHome.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <cmath>

namespace lumbra {

TestHome::TestHome() {
    const QByteArray home = m_dir.path().toUtf8();
    qputenv("HOME", home);
    qputenv("XDG_CONFIG_HOME", home + "/.config");
    qputenv("XDG_DATA_HOME", home + "/.local/share");
    qputenv("XDG_STATE_HOME", home + "/.local/state");
    qputenv("XDG_CACHE_HOME", home + "/.cache");
    qputenv("XDG_RUNTIME_DIR", home + "/run");
    QDir().mkpath(m_dir.filePath(QStringLiteral("run")));
    QFile::setPermissions(m_dir.filePath(QStringLiteral("run")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qunsetenv("LUMBRA_LIBRARY");
    qunsetenv("LUMBRA_HANGLOG");
}

Location TestHome::path() const {
    // Canonical, since the folder of temporary files may itself be behind a link.
    return Location(QStringView(m_dir.path())).canonical();
}

Location TestHome::folder(std::string_view relative) const {
    const Location made = path().child(relative);
    QDir().mkpath(made.toString());
    return made;
}

Location TestHome::file(std::string_view relative, const QByteArray& bytes) const {
    const Location made = path().child(relative);
    QDir().mkpath(made.parent().toString());
    QFile file(made.toString());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", made.path().constData());
    return made;
}

void TestHome::touch(const Location& location, double secondsSince1970) {
    const double whole = std::floor(secondsSince1970);
    const timespec time{time_t(whole), long((secondsSince1970 - whole) * 1e9)};
    const timespec times[2] = {time, time};
    if (utimensat(AT_FDCWD, location.path().constData(), times, AT_SYMLINK_NOFOLLOW) != 0)
        qFatal("cannot touch %s", location.path().constData());
}

} // namespace lumbra

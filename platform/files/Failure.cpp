// SPDX-License-Identifier: GPL-3.0-or-later
#include "Failure.h"

#include <cerrno>
#include <cstring>

namespace lumbra::files {

namespace {

std::string_view lastComponent(std::string_view path) {
    return path.substr(path.rfind('/') + 1); // npos + 1 is 0
}

} // namespace

Failure::Failure(int errorCode, std::string_view path) : Failure(errorCode, path, reasonOf(errorCode)) {}

Failure::Failure(int errorCode, std::string_view path, QString why)
    : code(errorCode), name(lastComponent(path)), reason(std::move(why)) {}

Files::Error sentence(const QString& verb, const Failure& failure) {
    return {QStringLiteral("Couldn't %1 %2: %3.").arg(verb, readable(failure.name), failure.reason), failure.code};
}

QString readable(std::string_view path) {
    const std::string_view name = lastComponent(path);
    QString text = QString::fromUtf8(name.data(), qsizetype(name.size()));
    for (QChar& letter : text) {
        if (letter.category() == QChar::Other_Control)
            letter = u' ';
    }
    return text;
}

QString reasonOf(int code) {
    switch (code) {
    case ENOENT:
        return QStringLiteral("it isn't there any more");
    case EEXIST:
        return QStringLiteral("something with this name is there already");
    case EACCES:
    case EPERM:
        return QStringLiteral("you don't have permission");
    case ENOSPC:
    case EDQUOT:
        return QStringLiteral("the disk is full");
    case EROFS:
        return QStringLiteral("the disk is read-only");
    case EFBIG:
        return QStringLiteral("it is too large for the disk");
    case EIO:
        return QStringLiteral("the disk can't be read or written");
    case EXDEV:
        return QStringLiteral("it would have to go to another disk");
    case ENAMETOOLONG:
        return QStringLiteral("the name is too long");
    case EINVAL:
        return QStringLiteral("it can't be named or placed like this");
    case ENOTDIR:
        return QStringLiteral("something on the way to it isn't a folder");
    case ENOTEMPTY:
        return QStringLiteral("the folder isn't empty");
    case EBUSY:
        return QStringLiteral("it is in use");
    case ESTALE:
        return QStringLiteral("its folder was moved meanwhile");
    case EOPNOTSUPP:
        return QStringLiteral("the disk can't do this");
    default:
        // Never strerror: it speaks the language of the locale.
        if (const char* words = ::strerrordesc_np(code))
            return QString::fromUtf8(words).toLower();
        return QStringLiteral("error %1").arg(code);
    }
}

} // namespace lumbra::files

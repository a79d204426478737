// A disk that fails when a test says so: the default VFS of SQLite with a fault in one of its calls.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sqlite3.h>

namespace lumbra {

class FailingDisk {
public:
    enum class Fault {
        error,    // the call fails as on a broken disk
        full,     // a write fails for want of space, any other call as above
        locked,   // a lock is held by somebody else, any other call succeeds
        tornWrite // a write does half of its work and then fails, any other call as above
    };

    // Becomes the disk of every connection that is opened from now on.
    static void install();

    // The n-th call from now on fails, from 1; and all after it, until mended, when it is for good.
    static void failAt(int n, Fault fault, bool forGood);

    // True when the fault was met.
    static bool mend();

    // The state, for the calls.
    static int fails(int code, int lockCode = SQLITE_OK);
    static Fault fault() { return s_fault; }

private:
    static inline int s_countdown = 0; // 0: no fault is ahead
    static inline bool s_forGood = false;
    static inline bool s_failing = false;
    static inline bool s_met = false;
    static inline Fault s_fault = Fault::error;
};

namespace failing {

inline sqlite3_vfs* disk = nullptr;
inline sqlite3_vfs vfs;

struct File {
    sqlite3_file base;
    sqlite3_file* real; // lies behind this
};

inline sqlite3_file* realOf(sqlite3_file* file) {
    return reinterpret_cast<File*>(file)->real;
}

inline int close(sqlite3_file* file) {
    return realOf(file)->pMethods->xClose(realOf(file));
}

inline int read(sqlite3_file* file, void* into, int size, sqlite3_int64 at) {
    if (const int code = FailingDisk::fails(SQLITE_IOERR_READ))
        return code;
    return realOf(file)->pMethods->xRead(realOf(file), into, size, at);
}

inline int write(sqlite3_file* file, const void* from, int size, sqlite3_int64 at) {
    const bool full = FailingDisk::fault() == FailingDisk::Fault::full;
    if (const int code = FailingDisk::fails(full ? SQLITE_FULL : SQLITE_IOERR_WRITE)) {
        if (FailingDisk::fault() == FailingDisk::Fault::tornWrite)
            realOf(file)->pMethods->xWrite(realOf(file), from, size / 2, at);
        return code;
    }
    return realOf(file)->pMethods->xWrite(realOf(file), from, size, at);
}

inline int truncate(sqlite3_file* file, sqlite3_int64 size) {
    if (const int code = FailingDisk::fails(SQLITE_IOERR_TRUNCATE))
        return code;
    return realOf(file)->pMethods->xTruncate(realOf(file), size);
}

inline int sync(sqlite3_file* file, int flags) {
    if (const int code = FailingDisk::fails(SQLITE_IOERR_FSYNC))
        return code;
    return realOf(file)->pMethods->xSync(realOf(file), flags);
}

inline int size(sqlite3_file* file, sqlite3_int64* size) {
    if (const int code = FailingDisk::fails(SQLITE_IOERR_FSTAT))
        return code;
    return realOf(file)->pMethods->xFileSize(realOf(file), size);
}

inline int lock(sqlite3_file* file, int level) {
    if (const int code = FailingDisk::fails(SQLITE_IOERR_LOCK, SQLITE_BUSY))
        return code;
    return realOf(file)->pMethods->xLock(realOf(file), level);
}

inline int unlock(sqlite3_file* file, int level) {
    return realOf(file)->pMethods->xUnlock(realOf(file), level);
}

inline int reserved(sqlite3_file* file, int* result) {
    return realOf(file)->pMethods->xCheckReservedLock(realOf(file), result);
}

inline int control(sqlite3_file* file, int operation, void* argument) {
    return realOf(file)->pMethods->xFileControl(realOf(file), operation, argument);
}

inline int sectorSize(sqlite3_file* file) {
    return realOf(file)->pMethods->xSectorSize(realOf(file));
}

inline int characteristics(sqlite3_file* file) {
    return realOf(file)->pMethods->xDeviceCharacteristics(realOf(file));
}

inline int shmMap(sqlite3_file* file, int region, int size, int extend, void volatile** mapped) {
    if (const int code = FailingDisk::fails(SQLITE_IOERR_SHMMAP))
        return code;
    return realOf(file)->pMethods->xShmMap(realOf(file), region, size, extend, mapped);
}

inline int shmLock(sqlite3_file* file, int offset, int count, int flags) {
    // Letting go of a lock succeeds on every disk. Of the locks, those of writing, checkpoint and recovery are what
    // others hold for long; a lock of readers that is not to be had is asked for during ten seconds.
    const bool isAskedFor = !(flags & SQLITE_SHM_UNLOCK);
    if (isAskedFor && (offset < 3 || FailingDisk::fault() != FailingDisk::Fault::locked)) {
        if (const int code = FailingDisk::fails(SQLITE_IOERR_SHMLOCK, SQLITE_BUSY))
            return code;
    }
    return realOf(file)->pMethods->xShmLock(realOf(file), offset, count, flags);
}

inline void shmBarrier(sqlite3_file* file) {
    realOf(file)->pMethods->xShmBarrier(realOf(file));
}

inline int shmUnmap(sqlite3_file* file, int remove) {
    return realOf(file)->pMethods->xShmUnmap(realOf(file), remove);
}

inline const sqlite3_io_methods methods{
    2,          close,           read,   write,   truncate,   sync,     size,    lock,   unlock, reserved, control,
    sectorSize, characteristics, shmMap, shmLock, shmBarrier, shmUnmap, nullptr, nullptr};

inline int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    file->pMethods = nullptr; // then nothing is closed
    if (const int code = FailingDisk::fails(SQLITE_CANTOPEN))
        return code;
    auto* const own = reinterpret_cast<File*>(file);
    own->real = reinterpret_cast<sqlite3_file*>(own + 1);
    const int result = disk->xOpen(disk, name, own->real, flags, outFlags);
    if (own->real->pMethods)
        file->pMethods = &methods;
    return result;
}

inline int remove(sqlite3_vfs*, const char* name, int syncFolder) {
    if (const int code = FailingDisk::fails(SQLITE_IOERR_DELETE))
        return code;
    return disk->xDelete(disk, name, syncFolder);
}

inline int access(sqlite3_vfs*, const char* name, int flags, int* result) {
    if (const int code = FailingDisk::fails(SQLITE_IOERR_ACCESS))
        return code;
    return disk->xAccess(disk, name, flags, result);
}

} // namespace failing

inline void FailingDisk::install() {
    failing::disk = sqlite3_vfs_find(nullptr);
    failing::vfs = *failing::disk;
    failing::vfs.zName = "failing";
    failing::vfs.szOsFile += int(sizeof(failing::File));
    failing::vfs.xOpen = failing::open;
    failing::vfs.xDelete = failing::remove;
    failing::vfs.xAccess = failing::access;
    sqlite3_vfs_register(&failing::vfs, 1);
}

inline void FailingDisk::failAt(int n, Fault fault, bool forGood) {
    s_countdown = n;
    s_fault = fault;
    s_forGood = forGood;
    s_failing = s_met = false;
}

inline bool FailingDisk::mend() {
    s_countdown = 0;
    s_failing = false;
    return s_met;
}

inline int FailingDisk::fails(int code, int lockCode) {
    if (!s_failing && (s_countdown == 0 || --s_countdown > 0))
        return SQLITE_OK;
    s_failing = s_forGood;
    s_met = true;
    return s_fault == Fault::locked ? lockCode : code;
}

} // namespace lumbra

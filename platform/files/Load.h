// One transfer whose bytes have to be carried, and the folder that it goes to.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TreeCopy.h"
#include "platform/Descriptor.h"
#include "platform/Files.h"

#include <sys/stat.h>

#include <functional>
#include <optional>
#include <string>

namespace lumbra::files {

// Stays the same folder when it is renamed while things are copied into it.
class TargetFolder {
public:
    // Throws Failure.
    explicit TargetFolder(const Location& location);

    const Location& givenAs() const { return m_givenAs; }
    int number() const { return m_folder.number(); }
    dev_t device() const { return m_facts.st_dev; }

    // Where it is now, as it was given if that still leads to it.
    Location location() const;

private:
    Location m_givenAs;
    Descriptor m_folder;
    struct stat m_facts;
};

struct Load {
    enum class State {
        underWay,
        arrived,
        ended, // its arrival tells why, or that it was cancelled
    };

    const Files::Transfer* transfer;
    Files::Arrival* arrival;
    State state = State::underWay;
    unsigned char type = 0; // a DT_ constant
    TargetFolder* folder = nullptr;
    QByteArray part = {}; // the hidden name
    QString name = {};    // the final name
    bool isPartGone = false;
    TreeCopy::Result copied = {};

    bool isMove() const { return transfer->kind == Files::Transfer::Kind::move; }
    Location partLocation() const { return folder->givenAs().child(part.toStdString()); }
};

// Throws Failure when the transfer makes no sense, whatever the disks say.
void refuseNonsense(const Files::Transfer& transfer);

// A name that no file can have.
bool isImpossibleName(const Location& location);

// Gives the thing the wished name, or the next free one after it: `tryName` answers with 0, EEXIST or another error
// number, which ends it. `name` becomes the one that it got.
int takeFreeName(QString& name, const std::function<int(const QString&)>& tryName);

} // namespace lumbra::files

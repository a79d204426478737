// The program that decodes foreign files for the application: one request at a time, in a sandbox.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pictures.h"
#include "Sandbox.h"
#include "Service.h"

#include <QGuiApplication>

#include <malloc.h>

namespace {

// The next picture needs as much memory as the last one left: to give it back and have the system clear it anew each
// time costs some percent of a photograph.
void keepFreedMemory() {
    constexpr int largestKept = 16 * 1024 * 1024, mostKept = 32 * 1024 * 1024; // bytes: of one piece, and of all
    ::mallopt(M_MMAP_THRESHOLD, largestKept);
    ::mallopt(M_TRIM_THRESHOLD, mostKept);
}

} // namespace

int main(int argc, char** argv) {
    namespace reader = lumbra::reader;
    reader::Sandbox::tieToParent();
    keepFreedMemory();
    const QGuiApplication application(argc, argv); // fonts, for the text in drawings and pages
    reader::Pictures::warmUp();
    reader::Service service(reader::socketDescriptor, reader::blockDescriptor);
    if (!service.isReady() || !reader::Sandbox::enter())
        return 1;
    return service.run();
}

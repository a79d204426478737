// The program that decodes foreign files for the application: one request at a time, in a sandbox.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pictures.h"
#include "Sandbox.h"
#include "Service.h"

#include <QGuiApplication>

int main(int argc, char** argv) {
    namespace reader = lumbra::reader;
    reader::Sandbox::tieToParent();
    const QGuiApplication application(argc, argv); // fonts, for the text in drawings and pages
    reader::Pictures::warmUp();
    reader::Service service(reader::socketDescriptor, reader::blockDescriptor);
    if (!service.isReady() || !reader::Sandbox::enter())
        return 1;
    return service.run();
}

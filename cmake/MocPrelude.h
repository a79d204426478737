// Read by moc ahead of every header: the standard library's <concepts> relies on its configuration header, which moc
// would otherwise not have seen, and fails to parse.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstddef>

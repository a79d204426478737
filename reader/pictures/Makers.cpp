// SPDX-License-Identifier: GPL-3.0-or-later
#include "Makers.h"

namespace lumbra::reader {

QSize fittedWithoutEnlarging(QSize size, QSize box) {
    if (size.width() <= box.width() && size.height() <= box.height())
        return size;
    return fitted(QSizeF(size), box);
}

QSize fitted(QSizeF size, QSize box) {
    return size.scaled(QSizeF(box), Qt::KeepAspectRatio).toSize().expandedTo({1, 1}).boundedTo(box);
}

} // namespace lumbra::reader

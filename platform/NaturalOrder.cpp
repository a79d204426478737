// SPDX-License-Identifier: GPL-3.0-or-later
#include "NaturalOrder.h"

#include <unicode/coll.h>

#include <algorithm>
#include <array>
#include <numeric>

namespace lumbra {

struct NaturalOrder::Collation {
    std::unique_ptr<icu::Collator> collator;

    // Writes the key without its terminating zero into `room`; returns the length it needs.
    size_t key(QStringView name, char* room, size_t size) const {
        const int32_t length =
            collator->getSortKey(name.utf16(), int32_t(name.size()), reinterpret_cast<uint8_t*>(room), int32_t(size));
        return size_t(std::max(length - 1, 0));
    }
};

namespace {

// What the C library would take for the order of names. Asked of the environment, since nobody has to have called
// setlocale, and some must not.
std::string localeOfEnvironment() {
    for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
        const QByteArray value = qgetenv(variable);
        if (!value.isEmpty())
            return value.toStdString();
    }
    return {};
}

icu::Locale icuLocale(std::string_view name) {
    // The root and not what ICU makes of "C": that is the order of code points.
    const std::string language(name.substr(0, name.find('.')));
    if (language.empty() || language == "C" || language == "POSIX")
        return icu::Locale::getRoot();
    return icu::Locale::createCanonical(std::string(name).c_str());
}

} // namespace

const NaturalOrder& NaturalOrder::shared() {
    static const NaturalOrder order(localeOfEnvironment());
    return order;
}

NaturalOrder::NaturalOrder(std::string_view locale) : m_collation(std::make_unique<Collation>()) {
    UErrorCode status = U_ZERO_ERROR;
    m_collation->collator.reset(icu::Collator::createInstance(icuLocale(locale), status));
    if (U_FAILURE(status))
        qFatal("The data of the library for languages (ICU) is missing: %s", u_errorName(status));
    m_collation->collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    m_collation->collator->setAttribute(UCOL_STRENGTH, UCOL_SECONDARY, status);
}

NaturalOrder::~NaturalOrder() = default;

std::weak_ordering NaturalOrder::compare(QStringView a, QStringView b) const {
    UErrorCode status = U_ZERO_ERROR;
    const int result =
        m_collation->collator->compare(a.utf16(), int32_t(a.size()), b.utf16(), int32_t(b.size()), status);
    return result <=> 0;
}

QByteArray NaturalOrder::sortKey(QStringView name) const {
    std::array<char, 256> room;
    const size_t length = m_collation->key(name, room.data(), room.size());
    if (length < room.size())
        return QByteArray(room.data(), qsizetype(length));
    QByteArray key(qsizetype(length) + 1, Qt::Uninitialized);
    m_collation->key(name, key.data(), length + 1);
    key.chop(1);
    return key;
}

void NaturalOrder::Keys::add(QStringView name) {
    const size_t begin = m_bytes.size();
    size_t room = size_t(name.size()) * 2 + 16;
    m_bytes.resize(begin + room);
    const size_t length = m_order.m_collation->key(name, m_bytes.data() + begin, room);
    if (length >= room) {
        m_bytes.resize(begin + length + 1);
        m_order.m_collation->key(name, m_bytes.data() + begin, length + 1);
    }
    m_bytes.resize(begin + length);
    m_ends.push_back(m_bytes.size());
}

std::vector<size_t> NaturalOrder::Keys::order() const {
    const auto key = [this](size_t index) {
        const size_t begin = index == 0 ? 0 : m_ends[index - 1];
        return std::string_view(m_bytes).substr(begin, m_ends[index] - begin);
    };
    std::vector<size_t> order(m_ends.size());
    std::iota(order.begin(), order.end(), size_t(0));
    std::ranges::stable_sort(order, {}, key);
    return order;
}

} // namespace lumbra

// The order in which people expect names: by the rules of their language, without regard to case, and with numbers in
// names compared by value, so that "take 2" comes before "take 10".
//
// Names that differ in case only, or in leading zeros, are equal here: sorts are stable, and such names keep the order
// in which they came. Safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <compare>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lumbra {

class NaturalOrder {
public:
    // The order of the user's locale, as the environment named it when it was first asked for.
    static const NaturalOrder& shared();

    // The order of a locale such as "sv_SE.UTF-8"; the languages' common order for "C", "POSIX" and nothing.
    explicit NaturalOrder(std::string_view locale);
    ~NaturalOrder();
    Q_DISABLE_COPY_MOVE(NaturalOrder)

    std::weak_ordering compare(QStringView a, QStringView b) const;

    // Bytes that compare as the names do. For whoever compares a name more than once.
    QByteArray sortKey(QStringView name) const;

    // Sorts stably. `nameOf` yields an item's name as text or as UTF-8; it is asked once for each item.
    template <typename List, typename NameOf>
    void sort(List& list, NameOf nameOf) const {
        Keys keys(*this);
        for (const auto& item : std::as_const(list))
            keys.add(nameOf(item));
        List sorted;
        sorted.reserve(list.size());
        for (const size_t index : keys.order())
            sorted.push_back(std::move(list[typename List::size_type(index)]));
        list = std::move(sorted);
    }

private:
    // The keys of many names in one block of memory.
    class Keys {
    public:
        explicit Keys(const NaturalOrder& order) : m_order(order) {}

        void add(QStringView name);
        void add(const QString& name) { add(QStringView(name)); }
        void add(std::string_view utf8) { add(QString::fromUtf8(utf8.data(), qsizetype(utf8.size()))); }

        // The names' places as they were added, in the order of their keys.
        std::vector<size_t> order() const;

    private:
        const NaturalOrder& m_order;
        std::string m_bytes;
        std::vector<size_t> m_ends;
    };

    struct Collation;
    std::unique_ptr<Collation> m_collation;
};

} // namespace lumbra

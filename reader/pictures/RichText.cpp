// SPDX-License-Identifier: GPL-3.0-or-later
#include "RichText.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace lumbra::reader {

namespace {

using namespace std::string_view_literals;
using Style = Paragraph::Style;

constexpr qsizetype mostParagraphs = 80;
constexpr size_t deepest = 200; // groups in groups

// Groups that hold no text of the document.
constexpr std::array silent{"fonttbl"sv,   "colortbl"sv,  "stylesheet"sv, "info"sv,
                            "pict"sv,      "header"sv,    "footer"sv,     "object"sv,
                            "listtable"sv, "themedata"sv, "generator"sv,  "listoverridetable"sv};

// Characters of the Windows code page that Latin-1 has no place for.
constexpr char16_t windows[] = u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008dŽ\u008f\u0090‘’“”•–—˜™š›œ\u009džŸ";

QChar windowsCharacter(int code) {
    return code >= 0x80 && code < 0xa0 ? QChar(windows[code - 0x80]) : QChar(code);
}

class Reading {
public:
    explicit Reading(const QByteArray& document) : m_bytes(document) {}

    Paragraphs run() {
        while (m_at < m_bytes.size() && m_made.size() < mostParagraphs) {
            const char byte = m_bytes[m_at++];
            if (byte == '{')
                open();
            else if (byte == '}')
                close();
            else if (byte == '\\')
                control();
            else if (byte != '\r' && byte != '\n')
                put(windowsCharacter(uchar(byte)));
        }
        endParagraph();
        return std::move(m_made);
    }

private:
    struct Group {
        bool isSilent = false;
        int size = 24; // half points
        int skip = 1;  // what stands in for a character, in characters
    };

    void open() {
        if (m_groups.size() >= deepest)
            m_at = m_bytes.size();
        else
            m_groups.push_back(m_groups.back());
    }

    void close() {
        if (m_groups.size() > 1)
            m_groups.pop_back();
    }

    void put(QChar character) {
        if (m_groups.back().isSilent)
            return;
        if (m_skipping > 0)
            --m_skipping;
        else {
            m_text += character;
            m_size = std::max(m_size, m_groups.back().size);
        }
    }

    void control() {
        if (m_at == m_bytes.size())
            return;
        const char first = m_bytes[m_at];
        if (first == '\'') {
            put(windowsCharacter(m_bytes.mid(m_at + 1, 2).toInt(nullptr, 16)));
            m_at += 3;
        } else if (first == '*') {
            m_groups.back().isSilent = true; // what older readers should leave out
            ++m_at;
        } else if (!QChar::isLetter(uchar(first))) {
            ++m_at;
            put(first == '~' ? QChar(QChar::Nbsp) : first == '_' ? QChar(u'-') : QChar::fromLatin1(first));
        } else {
            word();
        }
    }

    void word() {
        qsizetype end = m_at;
        while (end < m_bytes.size() && end - m_at < 32 && m_bytes[end] >= 'a' && m_bytes[end] <= 'z')
            ++end;
        const std::string_view name(m_bytes.constData() + m_at, size_t(end - m_at));
        if (name.empty()) {
            ++m_at;
            return;
        }
        qsizetype numberEnd = end;
        while (numberEnd < m_bytes.size() && numberEnd - end < 10
               && (QChar::isDigit(uchar(m_bytes[numberEnd])) || (numberEnd == end && m_bytes[end] == '-')))
            ++numberEnd;
        const int number = m_bytes.mid(end, numberEnd - end).toInt();
        m_at = numberEnd < m_bytes.size() && m_bytes[numberEnd] == ' ' ? numberEnd + 1 : numberEnd;
        obey(name, number);
    }

    void obey(std::string_view name, int number) {
        Group& group = m_groups.back();
        if (name == "par" || name == "line" || name == "row")
            endParagraph();
        else if (name == "tab" || name == "cell")
            put(u' ');
        else if (name == "u") {
            put(QChar(ushort(number)));
            m_skipping = group.skip;
        } else if (name == "uc")
            group.skip = std::clamp(number, 0, 8);
        else if (name == "fs")
            group.size = number;
        else if (name == "plain")
            group.size = 24;
        else if (name == "bin")
            m_at = std::min(m_bytes.size(), m_at + std::max(number, 0));
        else if (std::ranges::find(silent, name) != silent.end())
            group.isSilent = true;
        else
            punctuation(name);
    }

    void punctuation(std::string_view name) {
        static constexpr std::array<std::pair<std::string_view, char16_t>, 7> signs{{{"emdash", u'—'},
                                                                                     {"endash", u'–'},
                                                                                     {"lquote", u'‘'},
                                                                                     {"rquote", u'’'},
                                                                                     {"ldblquote", u'“'},
                                                                                     {"rdblquote", u'”'},
                                                                                     {"bullet", u'•'}}};
        for (const auto& [called, sign] : signs) {
            if (called == name)
                put(sign);
        }
    }

    void endParagraph() {
        if (m_groups.back().isSilent)
            return;
        constexpr int titleSize = 36, headingSize = 28;
        const QString text = std::exchange(m_text, {}).simplified();
        const int size = std::exchange(m_size, 0);
        if (!text.isEmpty())
            m_made.append({text, size >= titleSize     ? Style::title
                                 : size >= headingSize ? Style::heading
                                                       : Style::body});
    }

    const QByteArray& m_bytes;
    qsizetype m_at = 0;
    std::vector<Group> m_groups{Group{}};
    QString m_text;
    int m_size = 0; // the largest of the paragraph
    int m_skipping = 0;
    Paragraphs m_made;
};

} // namespace

Paragraphs richText(const QByteArray& document) {
    return Reading(document).run();
}

} // namespace lumbra::reader

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Notes.h"
#include "support/TestHome.h"

#include <QTest>

#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

using namespace lumbra;

Q_DECLARE_METATYPE(lumbra::AgentNote)

namespace {

constexpr long ext4 = 0xEF53;
constexpr long tmpfs = 0x01021994;

AgentNote noteOf(std::optional<QString> prompt) {
    AgentNote note;
    note.prompt = std::move(prompt);
    return note;
}

AgentNote full() {
    return {QStringLiteral("a fox"), QStringLiteral("m"),       QStringLiteral("t"),
            QStringLiteral("k"),     QStringLiteral("A"),       QStringLiteral("s"),
            QStringLiteral("/r/x"),  QStringLiteral("0123abc"), Date{1700000000.0}};
}

QByteArray rawOf(const Location& file) {
    return ExtendedAttributes::read(file, Notes::attribute).value_or(QByteArray());
}

bool setRaw(const Location& file, const QByteArray& value) {
    return ExtendedAttributes::write(file, Notes::attribute, value);
}

long fileSystemOf(const Location& location) {
    struct statfs status;
    return ::statfs(location.path().constData(), &status) == 0 ? long(status.f_type) : 0;
}

// A file in memory, which holds attributes of 64 KiB where a disk holds 4; removed at the end.
class FileInMemory {
public:
    FileInMemory() : m_path(QByteArray("/dev/shm/lumbra-note-") + QByteArray::number(::getpid())) {
        QFile file(m_path.toString());
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot make a file in memory");
    }
    ~FileInMemory() { ::unlink(m_path.path().constData()); }
    Q_DISABLE_COPY_MOVE(FileInMemory)

    const Location& path() const { return m_path; }

private:
    Location m_path;
};

// Writes ever longer prompts until one does not fit; the longest one that does.
qsizetype longestPrompt(const Location& file, qsizetype most) {
    qsizetype fits = 0;
    qsizetype fails = most;
    while (fails - fits > 1) {
        const qsizetype middle = (fits + fails) / 2;
        (Notes::write(noteOf(QString(middle, u'x')), file) ? fits : fails) = middle;
    }
    return fits;
}

} // namespace

class NotesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNoteReadsAsItWasWritten() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(!Notes::read(file));
        QVERIFY(Notes::write(full(), file));
        QCOMPARE(Notes::read(file), full());
    }

    void theValueIsOneObjectWithSortedKeysAndPlainSlashes() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Notes::write(full(), file));
        QCOMPARE(rawOf(file),
                 QByteArray(R"({"agent":"A","commit":"0123abc","created":"2023-11-14T22:13:20Z","model":"m",)"
                            R"("prompt":"a fox","repo":"/r/x","source":"s","task":"k","tool":"t"})"));
    }

    void absentFieldsAreLeftOut() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Notes::write(noteOf(QStringLiteral("p")), file));
        QCOMPARE(rawOf(file), QByteArray(R"({"prompt":"p"})"));
    }

    void textsKeepTheirLettersAndLines_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("not ASCII") << QStringLiteral("Füchse 狐 🦊");
        QTest::newRow("lines and quotes") << QStringLiteral("a\nb\t\"c\" \\d/");
        QTest::newRow("control characters") << QStringLiteral("\u0001\u001f");
        QTest::newRow("a zero") << QString(QStringLiteral("a\0b"));
        QTest::newRow("empty") << QStringLiteral("");
    }
    void textsKeepTheirLettersAndLines() {
        QFETCH(QString, text);
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Notes::write(noteOf(text), file));
        QCOMPARE(Notes::read(file)->prompt, text);
    }

    void onlyTheTellingFieldsMakeANote_data() {
        QTest::addColumn<AgentNote>("note");
        QTest::addColumn<bool>("empty");
        const QString word = QStringLiteral("w");
        QTest::newRow("nothing") << AgentNote() << true;
        QTest::newRow("empty prompt") << noteOf(QString()) << true;
        QTest::newRow("prompt") << noteOf(word) << false;
        QTest::newRow("model") << AgentNote{.model = word} << false;
        QTest::newRow("tool") << AgentNote{.tool = word} << false;
        QTest::newRow("task") << AgentNote{.task = word} << false;
        QTest::newRow("agent") << AgentNote{.agent = word} << false;
        QTest::newRow("source") << AgentNote{.source = word} << false;
        QTest::newRow("repo") << AgentNote{.repo = word} << true;
        QTest::newRow("commit") << AgentNote{.commit = word} << true;
        QTest::newRow("date") << AgentNote{.created = Date{1}} << true;
    }
    void onlyTheTellingFieldsMakeANote() {
        QFETCH(AgentNote, note);
        QTEST(note.isEmpty(), "empty");
    }

    void theSummaryIsASentenceOfWhatIsKnown_data() {
        QTest::addColumn<AgentNote>("note");
        QTest::addColumn<QString>("summary");
        const QString a = QStringLiteral("A"), m = QStringLiteral("M"), t = QStringLiteral("T"),
                      k = QStringLiteral("K");
        QTest::newRow("nothing") << AgentNote() << "";
        QTest::newRow("only a commit") << AgentNote{.commit = k} << "";
        QTest::newRow("all") << AgentNote{.model = m, .tool = t, .task = k, .agent = a} << "Made by A with T for K";
        QTest::newRow("model alone") << AgentNote{.model = m} << "Made with M";
        QTest::newRow("tool before model") << AgentNote{.model = m, .tool = t} << "Made with T";
        QTest::newRow("model for want of a tool") << AgentNote{.model = m, .agent = a} << "Made by A with M";
        QTest::newRow("task alone") << AgentNote{.task = k} << "for K";
        QTest::newRow("agent and task") << AgentNote{.task = k, .agent = a} << "Made by A for K";
    }
    void theSummaryIsASentenceOfWhatIsKnown() {
        QFETCH(AgentNote, note);
        QTEST(note.summary(), "summary");
    }

    void aLaterNoteAddsAndOverwrites() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Notes::write(AgentNote{.prompt = QStringLiteral("old"), .model = QStringLiteral("m")}, file));
        QVERIFY(Notes::write(AgentNote{.prompt = QStringLiteral("new"), .tool = QStringLiteral("t")}, file));
        QCOMPARE(
            Notes::read(file),
            (AgentNote{.prompt = QStringLiteral("new"), .model = QStringLiteral("m"), .tool = QStringLiteral("t")}));
    }

    void theFirstDateStays_data() {
        QTest::addColumn<bool>("laterHasDate");
        QTest::newRow("against none") << false;
        QTest::newRow("against a later one") << true;
    }
    void theFirstDateStays() {
        QFETCH(bool, laterHasDate);
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Notes::write(AgentNote{.created = Date{1000}}, file));
        AgentNote later = noteOf(QStringLiteral("p"));
        if (laterHasDate)
            later.created = Date{2000};
        QVERIFY(Notes::write(later, file));
        QCOMPARE(Notes::read(file)->created, Date{1000});
    }

    void aDateIsAddedToANoteWithout() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Notes::write(noteOf(QStringLiteral("p")), file));
        QVERIFY(Notes::write(AgentNote{.created = Date{2000}}, file));
        QCOMPARE(Notes::read(file)->created, Date{2000});
    }

    void anEmptyPromptOverridesAndStays() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Notes::write(noteOf(QStringLiteral("p")), file));
        QVERIFY(Notes::write(noteOf(QStringLiteral("")), file));
        QCOMPARE(rawOf(file), QByteArray(R"({"prompt":""})"));
        QCOMPARE(Notes::read(file)->prompt, QStringLiteral(""));
    }

    void whatIsNoNoteReadsAsNone_data() {
        QTest::addColumn<QByteArray>("value");
        QTest::newRow("nothing") << QByteArray("");
        QTest::newRow("an array") << QByteArray(R"([{"prompt":"p"}])");
        QTest::newRow("a text") << QByteArray(R"("prompt")");
        QTest::newRow("cut short") << QByteArray("{\"prompt\":\"p");
        QTest::newRow("more after it") << QByteArray(R"({"prompt":"p"} x)");
        QTest::newRow("binary") << QByteArray("\0\1\2\xff\xfe", 5);
        QTest::newRow("not UTF-8") << QByteArray("{\"prompt\":\"\xc3\x28\"}");
        QTest::newRow("a number for a text") << QByteArray(R"({"prompt":5})");
        QTest::newRow("a list for a text") << QByteArray(R"({"prompt":"p","tool":["t"]})");
        QTest::newRow("a number for a date") << QByteArray(R"({"prompt":"p","created":1700000000})");
        QTest::newRow("no date") << QByteArray(R"({"prompt":"p","created":"yesterday"})");
        QTest::newRow("an empty date") << QByteArray(R"({"prompt":"p","created":""})");
        QTest::newRow("a day that there is not") << QByteArray(R"({"created":"2023-02-30T00:00:00Z"})");
        QTest::newRow("a day without a time") << QByteArray(R"({"created":"2023-02-20"})");
        QTest::newRow("a time without a zone") << QByteArray(R"({"created":"2023-02-20T10:00:00"})");
        QTest::newRow("a date of another kind") << QByteArray(R"({"created":"Mon Feb 20 10:00:00 2023"})");
        QTest::newRow("deeper than anybody nests") << QByteArray(2000, '[');
    }
    void whatIsNoNoteReadsAsNone() {
        QFETCH(QByteArray, value);
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(setRaw(file, value));
        QVERIFY(!Notes::read(file));
        // It does not stand in the way of a note either.
        QVERIFY(Notes::write(full(), file));
        QCOMPARE(Notes::read(file), full());
    }

    void notesOfOtherWritersAreRead_data() {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<AgentNote>("note");
        QTest::newRow("empty object") << QByteArray("{}") << AgentNote();
        QTest::newRow("unknown keys") << QByteArray(R"({"prompt":"p","seed":7})") << noteOf(QStringLiteral("p"));
        QTest::newRow("spread over lines") << QByteArray("{\n \"prompt\" : \"p\"\n}\n") << noteOf(QStringLiteral("p"));
        QTest::newRow("escaped slashes") << QByteArray(R"({"prompt":"a\/b"})") << noteOf(QStringLiteral("a/b"));
        QTest::newRow("null for nothing")
            << QByteArray(R"({"prompt":"p","tool":null,"created":null})") << noteOf(QStringLiteral("p"));
        const double moment = 1700000000;
        QTest::newRow("in UTC") << QByteArray(R"({"created":"2023-11-14T22:13:20Z"})")
                                << AgentNote{.created = Date{moment}};
        QTest::newRow("in a zone") << QByteArray(R"({"created":"2023-11-15T03:43:20+05:30"})")
                                   << AgentNote{.created = Date{moment}};
        QTest::newRow("in a zone without a colon")
            << QByteArray(R"({"created":"2023-11-14T17:13:20-0500"})") << AgentNote{.created = Date{moment}};
        QTest::newRow("with a fraction") << QByteArray(R"({"created":"2023-11-14T22:13:20.250Z"})")
                                         << AgentNote{.created = Date{moment + 0.25}};
    }
    void notesOfOtherWritersAreRead() {
        QFETCH(QByteArray, value);
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(setRaw(file, value));
        const auto read = Notes::read(file);
        QVERIFY(read.has_value());
        QTEST(*read, "note");
    }

    void aMomentWithoutATextIsNotWritten_data() {
        QTest::addColumn<double>("seconds");
        QTest::newRow("never") << std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("for ever") << std::numeric_limits<double>::infinity();
        QTest::newRow("after the year 9999") << 253402300800.0;
        QTest::newRow("before the year 1") << -62135596801.0;
    }
    void aMomentWithoutATextIsNotWritten() {
        QFETCH(double, seconds);
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(!Notes::write(AgentNote{.prompt = QStringLiteral("p"), .created = Date{seconds}}, file));
        QVERIFY(!Notes::read(file));
    }

    void theWidestMomentsAreKept_data() {
        QTest::addColumn<double>("seconds");
        QTest::newRow("year 1") << -62135596800.0;
        QTest::newRow("1970") << 0.0;
        QTest::newRow("year 9999") << 253402300799.0;
    }
    void theWidestMomentsAreKept() {
        QFETCH(double, seconds);
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Notes::write(AgentNote{.created = Date{seconds}}, file));
        QCOMPARE(Notes::read(file)->created, Date{seconds});
    }

    void aNoteThatNoLongerFitsIsRefusedAndTheOlderOneStays_data() {
        QTest::addColumn<bool>("inMemory");
        QTest::newRow("on the disk") << false;
        QTest::newRow("in memory") << true;
    }
    void aNoteThatNoLongerFitsIsRefusedAndTheOlderOneStays() {
        QFETCH(bool, inMemory);
        TestHome home;
        const FileInMemory memory;
        const Location file = inMemory ? memory.path() : home.file("a.png");
        if (fileSystemOf(file) != (inMemory ? tmpfs : ext4))
            QSKIP("another file system, with limits of its own");
        const qsizetype limit = inMemory ? 65536 : 4096;

        const qsizetype fits = longestPrompt(file, limit * 2);
        const auto longest = noteOf(QString(fits, u'x'));
        QVERIFY(Notes::write(longest, file));
        QVERIFY(rawOf(file).size() <= limit);
        QVERIFY(rawOf(file).size() >= (inMemory ? limit : 4000)); // a disk keeps some bytes for itself
        QCOMPARE(Notes::read(file), longest);

        QVERIFY(!Notes::write(noteOf(QString(fits + 1, u'y')), file));
        QCOMPARE(Notes::read(file), longest);
        QVERIFY(!Notes::write(AgentNote{.tool = QStringLiteral("one word too many")}, file));
        QCOMPARE(Notes::read(file), longest);
        QVERIFY(Notes::write(noteOf(QStringLiteral("short")), file));
        QCOMPARE(Notes::read(file), noteOf(QStringLiteral("short")));
    }

    void whatIsNotThereHasNoNoteAndTakesNone_data() {
        QTest::addColumn<Location>("file");
        QTest::newRow("no path") << Location();
        QTest::newRow("no such file") << Location(QByteArray("/nonexistent/a.png"));
        QTest::newRow("a file system without attributes") << Location(QByteArray("/proc/self/comm"));
    }
    void whatIsNotThereHasNoNoteAndTakesNone() {
        QFETCH(Location, file);
        QVERIFY(!Notes::write(full(), file));
        QVERIFY(!Notes::read(file));
    }

    void aNoteTravelsWithItsFile() {
        TestHome home;
        const Location file = home.file("a.png");
        const Location moved = home.folder("there").child("b\nc.png");
        QVERIFY(Notes::write(full(), file));
        QVERIFY(QFile::rename(file.toString(), moved.toString()));
        QCOMPARE(Notes::read(moved), full());
    }

    void aLinkStandsForItsFile() {
        TestHome home;
        const Location file = home.file("a.png");
        const Location link = home.path().child("link.png");
        QVERIFY(QFile::link(file.toString(), link.toString()));
        QVERIFY(Notes::write(full(), link));
        QCOMPARE(Notes::read(file), full());
    }
};

QTEST_GUILESS_MAIN(NotesTest)
#include "tst_notes.moc"

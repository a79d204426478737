// SPDX-License-Identifier: GPL-3.0-or-later
#include "Palette.h"

#include "platform/Desktop.h"
#include "platform/Tasks.h"

#include <algorithm>

namespace lumbra {

namespace {

constexpr auto pool = Tasks::Pool::userInitiated;

} // namespace

Palette::Palette(Library* library, QObject* parent) : QObject(parent), m_library(library) {
    const auto forget = [this] { m_facts.reset(); };
    connect(library, &Library::stateChanged, this, forget);
    connect(library, &Library::projectsChanged, this, forget);
    connect(library, &Library::derivedChanged, this, forget);
    const auto outdate = [this] {
        if (shown())
            prepare();
    };
    connect(library, &Library::indexChanged, this, outdate);
    connect(library, &Library::projectsChanged, this, outdate);
    connect(library, &Library::stateChanged, this, outdate);
    connect(library, &Library::paletteOpenChanged, this, &Palette::follow);
    if (shown())
        follow();
}

Palette::~Palette() {
    dropCatalog();
}

void Palette::setQuery(const QString& typed) {
    if (m_typed == typed)
        return;
    m_typed = typed;
    Q_EMIT queryChanged();
    search();
}

bool Palette::press(int key, Qt::KeyboardModifiers modifiers) {
    switch (key) {
    case Qt::Key_Down:
        setHighlighted(std::min(m_highlighted + 1, m_rows.rowCount() - 1));
        return true;
    case Qt::Key_Up:
        setHighlighted(m_highlighted - 1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        open((modifiers & ~Qt::KeypadModifier) == Qt::ControlModifier);
        return true;
    case Qt::Key_Escape:
        close();
        return true;
    default:
        return false;
    }
}

void Palette::open(bool play) {
    if (m_highlighted >= m_rows.rowCount())
        return;
    const PaletteResult row = m_rows.results()[m_highlighted];
    close();
    switch (row.kind) {
    case PaletteResult::Kind::project:
    case PaletteResult::Kind::folder:
        m_library->setPlace(*row.place);
        break;
    case PaletteResult::Kind::file:
        if (play)
            this->play(*row.asset);
        else
            m_library->reveal(row.asset->url);
        break;
    case PaletteResult::Kind::action:
        row.run();
        break;
    }
    if (!m_library->playing())
        Q_EMIT arrived();
}

void Palette::openRow(int row) {
    if (row < 0 || row >= m_rows.rowCount())
        return;
    setHighlighted(row);
    open(false);
}

void Palette::play(const Asset& asset) {
    Assets beside;
    const auto folders = m_library->index().foldersUnder(asset.url.parent());
    if (!folders.isEmpty() && folders.first()->path() == asset.url.parent().view()) // it comes before those below it
        for (size_t place = 0; place < folders.first()->size(); ++place)
            beside.append(folders.first()->assetAt(place));
    m_library->setPlaying(PlayRequest{asset, sorted(SortOrder::newest, beside)});
}

// Opened or closed: either way nothing is left of what was typed before.
void Palette::follow() {
    ++m_turns;
    m_typed.clear();
    Q_EMIT queryChanged();
    if (shown()) {
        prepare();
        search();
    } else {
        ++m_searches;
        dropCatalog();
    }
    Q_EMIT shownChanged();
}

void Palette::search() {
    ++m_searches;
    m_query = PaletteQuery::typed(m_typed);
    m_answer = {};
    m_isAnswered = m_query.isEmpty();
    setHighlighted(0);
    searchNames();
}

void Palette::searchNames() {
    m_folders.clear();
    m_named.clear();
    if (m_catalog && !m_query.isEmpty()) {
        const auto folders = m_catalog->folders(m_query, PaletteSearch::mostFolders);
        for (const PaletteCatalog::Folder& folder : folders)
            m_folders.append(PaletteSearch::folder(folder, m_library->statsFor(folder.url).count));
        m_named = m_catalog->files(m_query, PaletteSearch::mostNamedFiles, m_library->index());
        askInsights();
    }
    show();
}

// One question at a time: who types faster than the store answers gets the answer to what was typed last.
void Palette::askInsights() {
    if (m_isAsking)
        return;
    if (!m_insights.search) {
        m_isAnswered = true;
        return;
    }
    m_isAsking = true;
    const auto ask = [insights = m_insights, query = m_query.text(), named = m_named, index = m_library->index()] {
        Answer answer;
        const auto isNamed = [&](const Asset& asset) {
            return std::ranges::any_of(named, [&](const Asset& other) { return other.url == asset.url; });
        };
        const QStringList paths = insights.search(query, PaletteSearch::mostContentHits);
        for (const QString& path : paths) {
            const auto asset = index.find(Location(QStringView(path)));
            if (asset && !isNamed(*asset) && named.size() + answer.found.size() < PaletteSearch::mostFiles)
                answer.found.append(*asset);
        }
        const Assets files = named + answer.found;
        for (const Asset& asset : files)
            if (const QString title = insights.title(asset); !title.isEmpty())
                answer.titles.insert(asset.url, title);
        return answer;
    };
    Tasks::run(pool, ask).then(this, [this, number = m_searches](const Answer& answer) {
        m_isAsking = false;
        if (number == m_searches)
            take(answer);
        else if (shown() && m_catalog && !m_query.isEmpty())
            askInsights();
    });
}

void Palette::take(const Answer& answer) {
    m_answer = answer;
    m_isAnswered = true;
    show();
}

void Palette::prepare() {
    m_isOutdated = m_isPreparing;
    if (std::exchange(m_isPreparing, true))
        return;
    const LibraryState state = m_library->state();
    const auto make = [index = m_library->index(), projects = m_library->projects(),
                       hidden = QSet<QString>(state.hidden.cbegin(), state.hidden.cend())] {
        return std::make_shared<const PaletteCatalog>(index, projects, hidden);
    };
    Tasks::run(pool, make).then(this, [this, turn = m_turns](const std::shared_ptr<const PaletteCatalog>& catalog) {
        m_isPreparing = false;
        if (turn == m_turns)
            takeCatalog(catalog);
        else
            Tasks::dropLater(catalog);
        if (shown() && m_isOutdated)
            prepare();
    });
}

void Palette::takeCatalog(const std::shared_ptr<const PaletteCatalog>& catalog) {
    const bool isFirst = !m_catalog;
    dropCatalog();
    m_catalog = catalog;
    if (isFirst)
        searchNames();
}

void Palette::dropCatalog() {
    if (m_catalog)
        Tasks::dropLater(std::exchange(m_catalog, nullptr));
}

void Palette::show() {
    const auto before = m_highlighted > 0 && m_highlighted < m_rows.rowCount()
                            ? std::optional(m_rows.results()[m_highlighted])
                            : std::nullopt;
    QList<PaletteResult> rows = PaletteSearch::projects(m_query, facts()) + m_folders;
    const Assets files = m_named + m_answer.found;
    for (const Asset& asset : files)
        rows.append(rowOf(asset));
    rows += PaletteSearch::actions(m_query, facts(),
                                   {.goToRecent = [library = m_library] { library->setPlace(Place::recent()); },
                                    .goToStarred = [library = m_library] { library->setPlace(Place::starred()); },
                                    .showLibrary = [root = m_library->root()] { Desktop::reveal({root}); }});
    m_rows.setResults(PaletteSearch::numbered(rows));
    keepHighlight(before);

    const QString text = rows.isEmpty() && m_isAnswered ? PaletteSearch::emptyText(m_typed) : QString();
    if (std::exchange(m_emptyText, text) != text)
        Q_EMIT emptyTextChanged();
}

// Rows that come later must not push away the one that somebody has gone to with the keys.
void Palette::keepHighlight(const std::optional<PaletteResult>& before) {
    if (!before)
        return;
    const QList<PaletteResult>& rows = m_rows.results();
    const auto same = std::ranges::find_if(rows, [&](const PaletteResult& row) {
        return row.kind == before->kind && row.title == before->title && row.place == before->place
               && row.asset == before->asset;
    });
    setHighlighted(same != rows.end() ? int(same - rows.begin()) : std::min(m_highlighted, m_rows.rowCount() - 1));
}

void Palette::setHighlighted(int row) {
    const int valid = std::max(row, 0);
    if (std::exchange(m_highlighted, valid) != valid)
        Q_EMIT highlightedChanged();
}

const PaletteSearch::Facts& Palette::facts() {
    if (!m_facts) {
        m_facts = {
            .groups = m_library->state().groups,
            .projects = m_library->visibleProjects(),
            .hueOfGroup = [library = m_library](const ProjectGroup& group) { return library->groupHue(group); },
            .hueOfProject = [library = m_library](const Project& project) { return library->hueFor(project.name); },
            .starred = m_library->derived().starred.size(),
            .root = m_library->root()};
    }
    return *m_facts;
}

PaletteResult Palette::rowOf(const Asset& asset) const {
    return PaletteSearch::file(asset, m_library->projectContaining(asset.url), m_answer.titles.value(asset.url),
                               Date::now());
}

} // namespace lumbra

// The zone search as the picker runs it: one query per keystroke while a city's name is typed,
// over all of the system's places. Prints the median and the slowest query, beside a plain scan
// that tests every name of every place with a case- and accent-blind prefix compare (what a
// search without an index costs), as a ratio. Target: a median under 5 ms per query.
//   orvelle-zone-search-bench [ROUNDS]

#include "places/ZonePlaces.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

using namespace orv;

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Every prefix of each name, as typed.
QStringList keystrokes()
{
    QStringList queries;
    for (const QString &name : {QStringLiteral("Lisbon"), QStringLiteral("Kyiv"), QStringLiteral("São Paulo"),
                                QStringLiteral("Hokkaido"), QStringLiteral("New York"), QStringLiteral("Zürich"),
                                QStringLiteral("Europe/Berlin"), QStringLiteral("Saint-Denis"), QStringLiteral("Ma")})
        for (qsizetype length = 1; length <= name.size(); ++length)
            queries.append(name.left(length));
    return queries;
}

} // namespace

int main(int argc, char **argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20;
    QElapsedTimer timer;
    timer.start();
    const ZonePlaces &places = ZonePlaces::shared();
    const double loadMs = timer.nsecsElapsed() / 1e6;
    if (places.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(places.problem()));
        return 2;
    }
    std::vector<std::vector<std::string>> plainNames;
    for (int i = 0; i < places.size(); ++i) {
        std::vector<std::string> names;
        for (const QString &name : places.at(i).names)
            names.push_back(ZonePlaces::searchKey(name));
        plainNames.push_back(std::move(names));
    }

    const QStringList queries = keystrokes();
    std::vector<double> indexed, plain;
    std::size_t hits = 0;
    for (int round = 0; round < rounds; ++round) {
        for (const QString &query : queries) {
            timer.restart();
            hits += std::size_t(places.search(query).size());
            indexed.push_back(timer.nsecsElapsed() / 1e6);

            timer.restart();
            const std::string key = ZonePlaces::searchKey(query);
            std::size_t found = 0;
            for (const auto &names : plainNames)
                found += std::any_of(names.begin(), names.end(), [&](const std::string &n) { return n.starts_with(key); });
            hits += found > 0;
            plain.push_back(timer.nsecsElapsed() / 1e6);
        }
    }
    std::printf("places: %d, built in %.0f ms; %lld queries x %d rounds (%zu hits)\n", places.size(), loadMs,
                qlonglong(queries.size()), rounds, hits);
    std::printf("indexed search: median %.3f ms, slowest %.3f ms per keystroke (target: median under 5 ms)\n",
                median(indexed), *std::max_element(indexed.begin(), indexed.end()));
    std::printf("plain scan:     median %.3f ms; ratio ours/plain %.3fx\n", median(plain), median(indexed) / median(plain));
    return 0;
}

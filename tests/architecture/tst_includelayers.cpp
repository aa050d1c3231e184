// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The source folders form layers: a folder may include its own headers and those of the layers
// below it, never one above, and no two files or folders may include each other. The build alone
// does not catch a violation (every part sees the include paths of all parts it links), so this
// test reads the sources and fails on the first include that breaks the order.

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

namespace {

// Lower numbers are lower layers. Folders of one number are peers: they may use each other, but
// never both ways. A folder is placed by the longest entry that is a prefix of its path, so a
// new subfolder of src/host sits with the host model until it is given a place of its own.
struct Layer
{
    QString folder;
    int rank;
};

const QList<Layer> &projectLayers()
{
    static const QList<Layer> layers{
        {QStringLiteral("vandrel"), 0},
        {QStringLiteral("pensioen/common"), 1},
        {QStringLiteral("pensioen/list"), 2},
        {QStringLiteral("pensioen/provider"), 2},
        {QStringLiteral("pensioen/scheme"), 2},
        {QStringLiteral("pensioen/commitments"), 2},
        {QStringLiteral("pensioen/dialogs"), 2},
        {QStringLiteral("pensioen/overzicht"), 2},
        {QStringLiteral("pensioen/report"), 2},
        {QStringLiteral("pensioen/main"), 3},
        {QStringLiteral("designer"), 4},
        {QStringLiteral("host"), 4},
        {QStringLiteral("host/store"), 5},
        {QStringLiteral("host/model"), 6},
        {QStringLiteral("host/app"), 7},
    };
    return layers;
}

struct SourceFile
{
    QString path;     // relative to the source root, "pensioen/list/penslist.cpp"
    QString folder;   // "pensioen/list"
    QStringList includes;   // the quoted includes, as written
};

QList<SourceFile> readSources(const QString &root)
{
    static const QRegularExpression include(QStringLiteral(R"re(^\s*#\s*include\s*"([^"]+)")re"),
                                            QRegularExpression::MultilineOption);
    QList<SourceFile> files;
    QDirIterator it(root, {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                    QDirIterator::Subdirectories);
    const QDir base(root);
    while (it.hasNext()) {
        const QString full = it.next();
        QFile file(full);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        SourceFile source;
        source.path = base.relativeFilePath(full);
        source.folder = QFileInfo(source.path).path();
        const QString text = QString::fromUtf8(file.readAll());
        for (auto match = include.globalMatch(text); match.hasNext();)
            source.includes.append(match.next().captured(1));
        files.append(source);
    }
    return files;
}

int rankOf(const QString &folder, const QList<Layer> &layers, QString *placedBy = nullptr)
{
    int best = -1;
    qsizetype bestLength = -1;
    for (const Layer &layer : layers) {
        const bool inside = folder == layer.folder || folder.startsWith(layer.folder + QLatin1Char('/'));
        if (inside && layer.folder.size() > bestLength) {
            best = layer.rank;
            bestLength = layer.folder.size();
            if (placedBy)
                *placedBy = layer.folder;
        }
    }
    return best;
}

// Depth-first search for a cycle; the first one found, as a path that ends where it starts.
QStringList findCycle(const QMap<QString, QSet<QString>> &edges)
{
    QHash<QString, int> state;   // 0 unvisited, 1 on the path, 2 done
    QStringList path;
    QStringList cycle;
    std::function<bool(const QString &)> visit = [&](const QString &node) {
        state[node] = 1;
        path.append(node);
        QStringList next(edges.value(node).cbegin(), edges.value(node).cend());
        next.sort();
        for (const QString &to : std::as_const(next)) {
            if (state.value(to) == 1) {
                cycle = path.mid(path.indexOf(to));
                cycle.append(to);
                return true;
            }
            if (state.value(to) == 0 && visit(to))
                return true;
        }
        path.removeLast();
        state[node] = 2;
        return false;
    };
    for (auto it = edges.cbegin(); it != edges.cend(); ++it)
        if (state.value(it.key()) == 0 && visit(it.key()))
            return cycle;
    return {};
}

// Everything wrong with the include structure under root, one line each; empty when it is sound.
QStringList includeFindings(const QString &root, const QList<Layer> &layers)
{
    QStringList findings;
    const QList<SourceFile> files = readSources(root);

    // Includes are resolved by file name, as the include paths of the build resolve them.
    QHash<QString, QStringList> byName;
    for (const SourceFile &file : files)
        byName[QFileInfo(file.path).fileName()].append(file.path);
    QHash<QString, QString> folderOf;
    for (const SourceFile &file : files)
        folderOf.insert(file.path, file.folder);

    QSet<QString> unplaced;
    QMap<QString, QSet<QString>> fileEdges;
    QMap<QString, QSet<QString>> folderEdges;
    for (const SourceFile &file : files) {
        QString placedBy;
        const int rank = rankOf(file.folder, layers, &placedBy);
        if (rank < 0 && !unplaced.contains(file.folder)) {
            unplaced.insert(file.folder);
            findings.append(QStringLiteral("%1: folder has no place in the layers").arg(file.folder));
        }
        fileEdges[file.path];
        for (const QString &written : file.includes) {
            const QString name = QFileInfo(written).fileName();
            const QStringList targets = byName.value(name);
            if (targets.isEmpty())
                continue;   // a generated or outside header
            if (targets.size() > 1) {
                findings.append(QStringLiteral("%1 includes \"%2\", which exists in %3")
                                    .arg(file.path, written, targets.join(QStringLiteral(" and "))));
                continue;
            }
            const QString target = targets.first();
            fileEdges[file.path].insert(target);
            const QString targetFolder = folderOf.value(target);
            if (targetFolder == file.folder)
                continue;
            folderEdges[file.folder].insert(targetFolder);
            const int targetRank = rankOf(targetFolder, layers);
            if (rank >= 0 && targetRank > rank)
                findings.append(QStringLiteral("%1 includes %2 from %3, which lies above %4")
                                    .arg(file.path, name, targetFolder, file.folder));
        }
    }
    if (const QStringList cycle = findCycle(fileEdges); !cycle.isEmpty())
        findings.append(QStringLiteral("files include each other: %1").arg(cycle.join(QStringLiteral(" -> "))));
    if (const QStringList cycle = findCycle(folderEdges); !cycle.isEmpty())
        findings.append(QStringLiteral("folders include each other: %1").arg(cycle.join(QStringLiteral(" -> "))));
    return findings;
}

// A small source tree to show that each kind of violation is caught.
class Tree
{
public:
    bool valid() const { return m_dir.isValid(); }
    QString root() const { return m_dir.path(); }
    void write(const QString &path, const QStringList &includes)
    {
        QDir(m_dir.path()).mkpath(QFileInfo(path).path());
        QFile file(m_dir.filePath(path));
        QVERIFY(file.open(QIODevice::WriteOnly));
        for (const QString &include : includes)
            file.write(QStringLiteral("#include \"%1\"\n").arg(include).toUtf8());
        file.write("#include <QString>\n");
    }

private:
    QTemporaryDir m_dir;
};

// A sound tree: a panel using the shared routines and the main panel using the panel.
void writeSoundTree(Tree &tree)
{
    tree.write(QStringLiteral("pensioen/common/errortrap.h"), {});
    tree.write(QStringLiteral("pensioen/common/errortrap.cpp"), {QStringLiteral("errortrap.h")});
    tree.write(QStringLiteral("pensioen/list/penslist.h"), {});
    tree.write(QStringLiteral("pensioen/list/penslist.cpp"),
               {QStringLiteral("penslist.h"), QStringLiteral("errortrap.h")});
    tree.write(QStringLiteral("pensioen/main/pensmain.h"), {});
    tree.write(QStringLiteral("pensioen/main/pensmain.cpp"),
               {QStringLiteral("pensmain.h"), QStringLiteral("penslist.h"), QStringLiteral("ui_pensmain.h")});
}

} // namespace

class TestIncludeLayers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sourcesKeepTheirLayers()
    {
        const QString root = QStringLiteral(VANDREL_SOURCE_DIR "/src");
        QVERIFY(QFileInfo(root + QStringLiteral("/pensioen/common/errortrap.h")).isFile());
        const QStringList findings = includeFindings(root, projectLayers());
        QVERIFY2(findings.isEmpty(), qPrintable(findings.join(QLatin1Char('\n'))));
    }

    void aSoundTreeHasNoFindings()
    {
        Tree tree;
        QVERIFY(tree.valid());
        writeSoundTree(tree);
        QCOMPARE(includeFindings(tree.root(), projectLayers()), QStringList());
    }

    // The error trap put back in the main panel's folder: every panel then reaches up.
    void aPanelReachingUpToTheMainFolderIsCaught()
    {
        Tree tree;
        writeSoundTree(tree);
        tree.write(QStringLiteral("pensioen/main/livecount.h"), {});
        tree.write(QStringLiteral("pensioen/list/penslist.cpp"),
                   {QStringLiteral("penslist.h"), QStringLiteral("livecount.h")});
        // The main panel uses the list, so the two folders now also form a circle.
        const QStringList findings = includeFindings(tree.root(), projectLayers());
        QCOMPARE(findings.size(), 2);
        QCOMPARE(findings.at(0), QStringLiteral("pensioen/list/penslist.cpp includes livecount.h from "
                                                "pensioen/main, which lies above pensioen/list"));
        QVERIFY2(findings.at(1).startsWith(QStringLiteral("folders include each other: ")),
                 qPrintable(findings.at(1)));
    }

    void theSharedRoutinesReachingUpToAPanelAreCaught()
    {
        Tree tree;
        writeSoundTree(tree);
        tree.write(QStringLiteral("pensioen/common/errortrap.cpp"),
                   {QStringLiteral("errortrap.h"), QStringLiteral("../list/penslist.h")});
        // The panel already uses the shared routines, so the two folders now also form a circle.
        const QStringList findings = includeFindings(tree.root(), projectLayers());
        QCOMPARE(findings.size(), 2);
        QCOMPARE(findings.at(0), QStringLiteral("pensioen/common/errortrap.cpp includes penslist.h from "
                                                "pensioen/list, which lies above pensioen/common"));
        QVERIFY2(findings.at(1).startsWith(QStringLiteral("folders include each other: ")),
                 qPrintable(findings.at(1)));
    }

    void twoFilesIncludingEachOtherAreCaught()
    {
        Tree tree;
        writeSoundTree(tree);
        tree.write(QStringLiteral("pensioen/list/rows.h"), {QStringLiteral("penslist.h")});
        tree.write(QStringLiteral("pensioen/list/penslist.h"), {QStringLiteral("rows.h")});
        const QStringList findings = includeFindings(tree.root(), projectLayers());
        QCOMPARE(findings.size(), 1);
        QVERIFY2(findings.first().startsWith(QStringLiteral("files include each other: ")),
                 qPrintable(findings.first()));
        QVERIFY(findings.first().contains(QStringLiteral("pensioen/list/rows.h")));
    }

    void peerFoldersUsingEachOtherAreCaught()
    {
        Tree tree;
        writeSoundTree(tree);
        tree.write(QStringLiteral("pensioen/scheme/pensgeg.h"), {});
        tree.write(QStringLiteral("pensioen/scheme/pensgeg.cpp"),
                   {QStringLiteral("pensgeg.h"), QStringLiteral("penslist.h")});
        tree.write(QStringLiteral("pensioen/list/penslist.cpp"),
                   {QStringLiteral("penslist.h"), QStringLiteral("pensgeg.h")});
        const QStringList findings = includeFindings(tree.root(), projectLayers());
        QCOMPARE(findings.size(), 1);
        QVERIFY2(findings.first().startsWith(QStringLiteral("folders include each other: ")),
                 qPrintable(findings.first()));
    }

    void aFolderWithoutAPlaceIsCaught()
    {
        Tree tree;
        writeSoundTree(tree);
        tree.write(QStringLiteral("tools/convert.cpp"), {QStringLiteral("errortrap.h")});
        QCOMPARE(includeFindings(tree.root(), projectLayers()),
                 QStringList{QStringLiteral("tools: folder has no place in the layers")});
    }

    void aHeaderNameUsedTwiceIsCaught()
    {
        Tree tree;
        writeSoundTree(tree);
        tree.write(QStringLiteral("pensioen/main/errortrap.h"), {});
        const QStringList findings = includeFindings(tree.root(), projectLayers());
        QVERIFY(!findings.isEmpty());
        QVERIFY2(findings.first().contains(QStringLiteral("includes \"errortrap.h\", which exists in")),
                 qPrintable(findings.first()));
    }
};

QTEST_GUILESS_MAIN(TestIncludeLayers)
#include "tst_includelayers.moc"

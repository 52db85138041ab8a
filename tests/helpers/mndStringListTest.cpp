#include "helpers/mndStringList.h"

#include "platform/foundation/FilePath.h"
#include "support/FullDisk.h"
#include "support/TestServices.h"
#include "tests/platform/foundation/FileTree.h"

static QStringList entries(mndStringList &list)
{
    QStringList all;
    for (quint64 i = 0; i < list.count(); ++i)
        all << list.stringAtIndex(i);
    return all;
}

struct StringList : testing::Test
{
    StringList()
    {
        list.addString(u"a"_s);
        list.insert(u"b"_s);
    }
    void write(const QByteArray &content) const { makeFile(path, content); }
    QByteArray content() const { return fileContent(path); }

    TestServices services;
    mndStringList list;
    const QTemporaryDir &root = services.root;
    QString path = root.filePath(u"list"_s);
};

TEST_F(StringList, FindsByEqualityAndRemovesByIdentity)
{
    EXPECT_EQ(mndStringList().indexOfString(u"a"_s), ~quint64(0));
    EXPECT_EQ(list.addString(u""_s), 3u);
    EXPECT_EQ(list.addString(QString()), 3u) << "no text is no entry";
    EXPECT_EQ(list.indexOfString(QString()), ~quint64(0));
    EXPECT_EQ(list.addString(u"b"_s), 4u);
    EXPECT_EQ(list.indexOfString(u"b"_s), 1u);
    EXPECT_EQ(list.indexOfString(u"B"_s), ~quint64(0));

    const QString made = QString::number(123);
    list.addString(made);
    list.addString(u"x"_s);
    list.addString(made);
    list.addString(QString::fromLatin1(""));
    list.removeString(QString());
    list.removeStringAtIndex(7);
    list.removeString(QString::number(123));
    EXPECT_EQ(list.count(), 7u);
    list.removeString(list.stringAtIndex(4));
    EXPECT_EQ(entries(list), QStringList({u"a"_s, u"b"_s, u""_s, u"b"_s, u"x"_s}));
    list.removeStringAtIndex(0);
    EXPECT_EQ(list.stringAtIndex(0), u"b"_s);
    for (const int none : {4, -1}) {
        EXPECT_THROW(list.stringAtIndex(quint64(none)), std::out_of_range);
        EXPECT_THROW(list.removeStringAtIndex(none), std::out_of_range);
        EXPECT_THROW(list.tableViewObjectValueForTableColumn(nullptr, 0, none), std::out_of_range);
    }
    EXPECT_EQ(list.tableViewObjectValueForTableColumn(nullptr, 0, 3), u"x"_s);
    EXPECT_EQ(list.numberOfRowsInTableView(nullptr), 4u);
    list.clear();
    EXPECT_EQ(list.count(), 0u);
    EXPECT_FALSE(list.isWhitelisted(u"/Applications/X.app"_s));
    list.addString(u"/Applications/X.app"_s);
    list.addString(u""_s);
    EXPECT_TRUE(list.isWhitelisted(u"/Applications/X.app"_s));
    for (const char *path : {"/Applications/X.app/Contents", "/applications/X.app", "/"})
        EXPECT_FALSE(list.isWhitelisted(QString::fromLatin1(path))) << path;
    EXPECT_FALSE(list.isWhitelisted(QString()));
    EXPECT_FALSE(list.isBundleType(u"/Applications/X.app"_s));
}

TEST_F(StringList, ComesBackFromItsFileWithOneEntryMore)
{
    ASSERT_TRUE(list.saveToFile(path));
    EXPECT_EQ(content(), "a\nb\n");
    ASSERT_TRUE(list.loadFromFile(path));
    EXPECT_EQ(entries(list), QStringList({u"a"_s, u"b"_s, u""_s}));
    ASSERT_TRUE(mndStringList().saveToFile(path));
    EXPECT_TRUE(QFile::exists(path) && content().isEmpty());
    ASSERT_TRUE(list.loadFromFile(path));
    EXPECT_EQ(entries(list), QStringList(u""_s));
    write("\xc3\xa4\r\n\nz");
    ASSERT_TRUE(list.loadFromFile(path));
    EXPECT_EQ(entries(list), QStringList({u"ä\r"_s, u""_s, u"z"_s}));
    write("\357\273\277a");
    ASSERT_TRUE(list.loadFromFile(path));
    EXPECT_EQ(entries(list), QStringList(u"\ufeff"_s + u'a')) << "no mark, but part of a name";
}

TEST_F(StringList, IsEmptyAfterAnUnreadableFileAndUnchangedWithoutOne)
{
    EXPECT_FALSE(list.loadFromFile(path));
    EXPECT_FALSE(list.loadFromFile(QString()));
    EXPECT_EQ(list.count(), 2u);
    const std::tuple<const char *, std::function<void()>> cases[] = {
        {"no UTF-8", [this] { write("a\n\xff\n"); }},
        {"cut character", [this] { write("a\xc3"); }},
        {"folder", [this] { QDir().mkdir(path); }},
        {"pipe", [this] { makePipe(path); }},
        {"enormous", [this] { write("a"), QFile::resize(path, qint64(1) << 40); }},
    };
    for (const auto &[name, make] : cases) {
        SCOPED_TRACE(name);
        make();
        list.addString(u"before"_s);
        EXPECT_FALSE(list.loadFromFile(path));
        EXPECT_EQ(list.count(), 0u);
        QFile::remove(path);
        QDir().rmdir(path);
    }
}

TEST_F(StringList, ReplacesTheFileAndNothingElse)
{
    const QString other = root.filePath(u"other"_s);
    ASSERT_TRUE(mndStringList().saveToFile(other));
    ASSERT_TRUE(QFile::link(other, path));
    EXPECT_TRUE(list.saveToFile(path));
    EXPECT_FALSE(QFileInfo(path).isSymLink());
    EXPECT_EQ(QFileInfo(other).size(), 0);
    list.addString(QString(QChar(0xdc80)));
    EXPECT_FALSE(list.saveToFile(path)) << "no Unicode";
    EXPECT_EQ(content(), "a\nb\n");
    list.removeStringAtIndex(2);
    EXPECT_FALSE(list.saveToFile(root.path())) << "a folder";
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_FALSE(list.saveToFile(path + u"/below a file"_s));
    for (const QString &none : {u""_s, QString(), path + QChar(0)})
        EXPECT_FALSE(list.saveToFile(none)) << qPrintable(none);
    EXPECT_EQ(content(), "a\nb\n");
    {
        const FullDisk full(3);
        EXPECT_FALSE(list.saveToFile(path)) << "a full disk";
    }
    EXPECT_EQ(content(), "a\nb\n") << "a full disk cost the list that was there";
    EXPECT_EQ(QDir(root.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
    ASSERT_TRUE(list.saveToFile(path));
    const QString strange = root.path() + u'/' + FilePath::decode("\xe4\xff");
    EXPECT_TRUE(list.saveToFile(strange) && list.loadFromFile(strange));
    EXPECT_TRUE(QFile::exists(path)) << "another name";
    EXPECT_EQ(::unlink(FilePath::encode(strange).constData()), 0);
    list.removeStringAtIndex(2);
    const QString pipe = root.filePath(u"pipe"_s);
    makePipe(pipe);
    EXPECT_FALSE(list.saveToFile(pipe)) << "nobody reads it";
    EXPECT_TRUE(QFile::exists(pipe) && !QFileInfo(pipe).isFile()) << "no file, and no list's";
}

TEST_F(StringList, IsWrittenOverWhereTheFolderTakesNoNewEntries)
{
    write("spared\n");
    ASSERT_EQ(::chmod(QFile::encodeName(root.path()).constData(), 0555), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0666), 0);
    {
        const NoPowers none;
        {
            const FullDisk full(8);
            list.addString(u"and another one"_s);
            EXPECT_FALSE(list.saveToFile(path));
        }
        EXPECT_EQ(content(), "spared\n") << "a full disk cost the list that was there";
        list.removeStringAtIndex(2);
        EXPECT_TRUE(list.saveToFile(path));
        EXPECT_EQ(content(), "a\nb\n");
    }
    ASSERT_EQ(::chmod(QFile::encodeName(root.path()).constData(), 0755), 0);
}

TEST_F(StringList, ComesBackHoweverLongItMayBeSaved)
{
    const QString mebibyte(1024 * 1024 - 1, u'x');
    list.clear();
    while (list.count() < 128)
        list.addString(mebibyte);
    ASSERT_TRUE(list.saveToFile(path));
    mndStringList loaded;
    ASSERT_TRUE(loaded.loadFromFile(path));
    EXPECT_EQ(loaded.count(), 129u);
    EXPECT_TRUE(loaded.stringAtIndex(127) == mebibyte);
    list.addString(u""_s);
    EXPECT_FALSE(list.saveToFile(path)) << "it could not be read again";
    EXPECT_EQ(QFileInfo(path).size(), mndStringList::largestFile);
}

TEST_F(StringList, SharesItsArrayWithADictionary)
{
    Dictionary settings = Dictionary::make();
    list.loadFromDic(settings, u"k"_s);
    list.loadFromDic(Dictionary(), u"k"_s);
    list.saveToDic(settings, u"k"_s);
    list.addString(u"c"_s);
    EXPECT_EQ(settings.value<StringArray>(u"k"_s).strings().size(), 3);
    list.loadFromDic(settings, u"k"_s);
    EXPECT_EQ(list.count(), 6u) << "its own array, once";

    mndStringList other;
    settings.setValue(u"texts"_s, QStringList({u"x"_s, u""_s}));
    settings.setValue(u"mixed"_s, QVariantList({u"y"_s, 7, QVariant()}));
    settings.setValue(u"text"_s, u"no collection"_s);
    for (const QString &key : {u"k"_s, u"texts"_s, u"texts"_s, u"mixed"_s, u"text"_s, u"a.b"_s})
        other.loadFromDic(settings, key);
    EXPECT_EQ(entries(other).mid(6), QStringList({u"x"_s, u""_s, u"x"_s, u""_s, u"y"_s}));
    list.clear();
    const QString one = QString::number(1234), two = QString::number(5678);
    for (const QString &text : {one, one, two, two})
        list.addString(text);
    list.removeString(settings.value<StringArray>(u"k"_s).strings().at(0));
    EXPECT_EQ(entries(list), QStringList(2, two)) << "named by its own entry, which is no copy";
    list.clear();
    EXPECT_EQ(other.count(), 11u);
    EXPECT_TRUE(settings.value<StringArray>(u"k"_s).strings().isEmpty());
}

#include "hosts/scribus/books/BookFile.h"
#include "tests/support/Test.h"

TEST(BookFileTest, ABookKeepsItsDocumentsWhereverItsFolderGoes)
{
    const Sandbox sandbox;
    const QStringList documents{sandbox.GetPath("book/one.sla"_q), "/elsewhere/two.sla"_q,
                                sandbox.GetPath("book/text/three \u00e4.sla"_q),
                                sandbox.GetPath("book/one.sla"_q)};
    WriteFile(sandbox.GetPath("book/one.sla"_q), "");
    BookFile book(sandbox.GetPath("book/a.slabook"_q));
    book.SetDocuments(documents);
    EXPECT_TRUE(book.IsModified());
    ASSERT_TRUE(book.Save().HasSucceeded());
    EXPECT_FALSE(book.IsModified());
    WriteFile(sandbox.GetPath("moved/a.slabook"_q), ReadFile(book.GetPath()));
    std::shared_ptr<BookFile> moved;
    const GResult read = BookFile::Read(sandbox.GetPath("moved/a.slabook"_q), moved);
    ASSERT_TRUE(read.HasSucceeded()) << read.GetReason().toStdString();
    EXPECT_EQ(moved->GetDocuments(), QStringList({sandbox.GetPath("moved/one.sla"_q), "/elsewhere/two.sla"_q,
                                                  sandbox.GetPath("moved/text/three \u00e4.sla"_q),
                                                  sandbox.GetPath("moved/one.sla"_q)}));
    moved->SetDocuments(moved->GetDocuments());
    EXPECT_FALSE(moved->IsModified());
    EXPECT_EQ(moved->GetTitle(), "a"_q);
    EXPECT_FALSE(moved->IsNumberedOn());
    WriteFile(moved->GetPath(),
              "{\"format\":\"layout-host book\",\"version\":1,\"documents\":[\"a.sla\"],"
              "\"title\":\"A <title>\",\"numbering\":\"continued\"}");
    const auto reread = [](const QString& path) {
        std::shared_ptr<BookFile> again;
        EXPECT_TRUE(BookFile::Read(path, again).HasSucceeded());
        return again;
    };
    const auto titled = reread(moved->GetPath());
    BookFile copy(sandbox.GetPath("copy.slabook"_q));
    copy.TakeSettings(*titled);
    ASSERT_TRUE(copy.Save().Then([&] { return titled->Save(); }).HasSucceeded());
    for (const QString& path : {copy.GetPath(), titled->GetPath()}) {
        EXPECT_EQ(reread(path)->GetTitle(), "A <title>"_q);
        EXPECT_TRUE(reread(path)->IsNumberedOn());
    }
    titled->SetNumberedOn(false);
    EXPECT_TRUE(titled->IsModified());
    for (const char* bad : {"", "[]", "{\"format\":\"layout-host book\",\"version\":2}", "{\"version\":1}",
                            "{\"format\":\"layout-host book\",\"version\":1,\"documents\":[1]}",
                            "{\"format\":\"layout-host book\",\"version\":1,\"numbering\":\"on\"}"}) {
        WriteFile(sandbox.GetPath("bad.slabook"_q), bad);
        EXPECT_FALSE(BookFile::Read(sandbox.GetPath("bad.slabook"_q), moved).HasSucceeded()) << bad;
    }
}

// Terminal input: whole lines from a byte stream, and waits that let windows live and can be woken.
#include "ConsoleInput.h"

#include <gtest/gtest.h>

#include <QTimer>

#include <unistd.h>

namespace {

using LINE_READ = CEditorHost::LINE_READ;

struct PIPE {
    int fd[2] = {-1, -1};
    PIPE() { EXPECT_EQ(::pipe(fd), 0); }
    ~PIPE() {
        for (int f : fd)
            if (f >= 0)
                ::close(f);
    }
    void Write(const std::string& s) {
        ASSERT_EQ(::write(fd[1], s.data(), s.size()), ssize_t(s.size()));
    }
    void CloseWriter() {
        ::close(fd[1]);
        fd[1] = -1;
    }
};

} // namespace

TEST(ConsoleInput, LinesComeWholeWhateverTheChunksAndTheLastNeedsNoLineEnd) {
    PIPE pipe;
    CConsoleInput input(pipe.fd[0]);
    // The second line arrives in two pieces while the reader waits in the event loop.
    pipe.Write("ZOOM\r\nDrawing");
    QTimer::singleShot(20, [&] { pipe.Write("Manage\n开孔"); });
    QTimer::singleShot(40, [&] { pipe.CloseWriter(); });
    std::wstring strLine;
    ASSERT_EQ(input.Read(strLine), LINE_READ::Line);
    EXPECT_EQ(strLine, L"ZOOM");
    ASSERT_EQ(input.Read(strLine), LINE_READ::Line);
    EXPECT_EQ(strLine, L"DrawingManage");
    ASSERT_EQ(input.Read(strLine), LINE_READ::Line);
    EXPECT_EQ(strLine, L"开孔");
    EXPECT_EQ(input.Read(strLine), LINE_READ::End);
}

TEST(ConsoleInput, PostedWorkWakesTheWaitAndTypedLinesStillFollow) {
    PIPE pipe;
    CConsoleInput input(pipe.fd[0]);
    bool bTimerRan = false;
    QTimer::singleShot(20, [&] {
        bTimerRan = true; // a window's event, handled while the command line waits
        input.Wake();
    });
    std::wstring strLine;
    EXPECT_EQ(input.Read(strLine), LINE_READ::Woken);
    EXPECT_TRUE(bTimerRan);
    // A wake that comes while nobody waits ends the next wait at once, once.
    input.Wake();
    EXPECT_EQ(input.Read(strLine), LINE_READ::Woken);
    pipe.Write("QUIT\n");
    ASSERT_EQ(input.Read(strLine), LINE_READ::Line);
    EXPECT_EQ(strLine, L"QUIT");
}

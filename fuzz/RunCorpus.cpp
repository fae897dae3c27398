// Runs a fuzz target once over each file named or found in the directories named, no mutation.
#include "FuzzSupport.h"

#include <cstdio>
#include <dirent.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

bool RunFile(const std::string& path) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f)
        return false;
    std::vector<uint8_t> data;
    uint8_t buf[65536];
    for (size_t n; (n = std::fread(buf, 1, sizeof buf, f)) > 0;)
        data.insert(data.end(), buf, buf + n);
    std::fclose(f);
    LLVMFuzzerTestOneInput(data.data(), data.size());
    return true;
}

int RunPath(const std::string& path) {
    struct stat st;
    if (::stat(path.c_str(), &st) != 0)
        return 0; // a target without saved crashes has no folder
    if (!S_ISDIR(st.st_mode))
        return RunFile(path) ? 1 : 0;
    int nRun = 0;
    DIR* dir = ::opendir(path.c_str());
    while (dirent* ent = dir ? ::readdir(dir) : nullptr)
        if (ent->d_name[0] != '.')
            nRun += RunPath(path + "/" + ent->d_name);
    if (dir)
        ::closedir(dir);
    return nRun;
}

} // namespace

int main(int argc, char** argv) {
    int nRun = 0;
    for (int i = 1; i < argc; ++i)
        nRun += RunPath(argv[i]);
    std::printf("%d inputs run\n", nRun);
    return nRun > 0 ? 0 : 1; // an empty corpus is a mistake
}

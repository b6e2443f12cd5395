#include "Work.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>

namespace {

using ketra_bench::allWorks;
using ketra_bench::Body;
using ketra_bench::Work;

int usage()
{
    std::cerr
        << "usage: ketra_works --list | --check | NAME REPETITIONS\n"
           "Names the works, checks the answers of all, or repeats one: a small program whose\n"
           "instructions can be counted.\n";
    return 2;
}

int check()
{
    int status = 0;
    for (const Work& work : allWorks()) {
        try {
            work.prepare()();
            std::cout << work.name << ": good\n";
        } catch (const std::exception& e) {
            std::cout << work.name << ": " << e.what() << "\n";
            status = 1;
        }
    }
    return status;
}

int repeat(const char* name, long repetitions)
{
    for (const Work& work : allWorks()) {
        if (work.name != name) continue;
        const Body body = work.prepare();
        for (long i = 0; i < repetitions; ++i) body();
        return 0;
    }
    std::cerr << "ketra_works: there is no work " << name << "\n";
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc == 2 && std::strcmp(argv[1], "--check") == 0) return check();
        if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
            for (const Work& work : allWorks()) std::cout << work.name << "\n";
            return 0;
        }
        if (argc == 3) return repeat(argv[1], std::strtol(argv[2], nullptr, 10));
        return usage();
    } catch (const std::exception& e) {
        std::cerr << "ketra_works: " << e.what() << "\n";
        return 1;
    }
}

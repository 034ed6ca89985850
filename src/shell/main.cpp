// main.cpp — the program's entry: start-up checks, then Console mode.
#include <cstdio>

#include "exec/front_end.h"
#include "lang/language_init.h"

int main() {
    if (tl::init_language_tables(tl::default_sizing()) < 0) return 1;
    std::puts("Tessaline");
    return 0;
}

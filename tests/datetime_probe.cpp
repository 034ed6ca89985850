// datetime_probe.cpp — answers date-time questions on standard input, one a line, for
// datetime_zoneinfo_test.py to compare with a second implementation:
//   "Z name"              load a database zone; prints "ok" or "bad"
//   "U seconds"           prints "offset abbreviation yyyy-mm-dd hh:mm:ss" of a UTC second
//   "L y m d hh mm ss"    prints the UTC second of a local time (gaps and overlaps resolved)
#include <cstdio>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>

#include "lang/datetime_value.h"

int main() {
    tl::TimeZone zone;
    std::string line;
    while (std::getline(std::cin, line)) {
        std::istringstream in(line);
        std::string op;
        in >> op;
        if (op == "Z") {
            std::string name;
            in >> name;
            std::puts(tl::load_database_zone(name, zone) == 0 ? "ok" : "bad");
        } else if (op == "U") {
            long long t = 0;
            in >> t;
            const tl::LocalFields f = tl::split_datetime(static_cast<double>(t), zone);
            std::printf("%d %s %04lld-%02d-%02d %02d:%02d:%02d\n", f.offset, f.abbr,
                        static_cast<long long>(f.date.year), f.date.month, f.date.day, f.hour, f.minute, f.second);
        } else if (op == "L") {
            double fields[6] = {};
            for (double& v : fields) in >> v;
            double out = 0;
            const int fault = tl::make_datetime_value(fields, zone, out);
            if (fault >= 0) {
                std::printf("fault %d\n", fault);
            } else {
                std::printf("%.0f\n", out);
            }
        } else {
            std::puts("?");
        }
        std::fflush(stdout);
    }
    return 0;
}

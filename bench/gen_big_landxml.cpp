// Writes a LandXML file with one large TIN surface, for the import
// measurements: a grid of points with a gently varying elevation, two
// triangles per grid cell, in the layout design programs write (one P or F
// per line, three decimals).
//
//   gen_big_landxml OUT.xml [POINTS]     (default 1000000 points)
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

int Usage() {
    std::fprintf(stderr, "usage: gen_big_landxml OUT.xml [POINTS]\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) return Usage();
    const long requested = argc == 3 ? std::strtol(argv[2], nullptr, 10) : 1000000;
    if (requested < 4) return Usage();
    const long side = static_cast<long>(std::sqrt(static_cast<double>(requested)));
    FILE* f = std::fopen(argv[1], "wb");
    if (!f) {
        std::perror(argv[1]);
        return 1;
    }
    std::fprintf(f,
                 "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                 "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" version=\"1.2\">\n"
                 " <Units><Metric linearUnit=\"meter\" areaUnit=\"squareMeter\" volumeUnit=\"cubicMeter\"/></Units>\n"
                 " <Surfaces>\n  <Surface name=\"Big\">\n   <Definition surfType=\"TIN\">\n    <Pnts>\n");
    // Grid point (i, j) has id i * side + j + 1; northing first.
    for (long i = 0; i < side; ++i)
        for (long j = 0; j < side; ++j) {
            const double n = 5000000.0 + 2.5 * static_cast<double>(i);
            const double e = 400000.0 + 2.5 * static_cast<double>(j);
            const double z =
                100.0 + 10.0 * std::sin(0.01 * static_cast<double>(i)) * std::cos(0.013 * static_cast<double>(j));
            std::fprintf(f, "     <P id=\"%ld\">%.3f %.3f %.3f</P>\n", i * side + j + 1, n, e, z);
        }
    std::fprintf(f, "    </Pnts>\n    <Faces>\n");
    for (long i = 0; i + 1 < side; ++i)
        for (long j = 0; j + 1 < side; ++j) {
            const long a = i * side + j + 1, b = a + 1, c = a + side, d = c + 1;
            std::fprintf(f, "     <F>%ld %ld %ld</F>\n     <F>%ld %ld %ld</F>\n", a, b, d, a, d, c);
        }
    std::fprintf(f, "    </Faces>\n   </Definition>\n  </Surface>\n </Surfaces>\n</LandXML>\n");
    if (std::fclose(f) != 0) {
        std::perror(argv[1]);
        return 1;
    }
    return 0;
}

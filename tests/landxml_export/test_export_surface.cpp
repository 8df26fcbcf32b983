// Surfaces: the source data is always there, ids count from 0, faces are
// written as stored.
#include <gtest/gtest.h>

#include "host/load_vantri_dati.h"
#include "lxe_documents.h"
#include "lxe_test_util.h"

namespace {

using lxetest::Between;
using lxetest::HasLine;

std::string ExportSurfaces(CVantriDoc& doc) {
    return lxetest::ExportSelection(doc, [&doc](TExportLandXMLResult& r) {
        for (unsigned i = 0; i < doc.GetLibDtm()->GetNoPrj(); ++i) r.dtmPrjs.push_back(doc.GetLibDtm()->GetPrj(i));
    });
}

TEST(ExportSurface, ProjectWithoutContoursOrBreaklinesStillWritesSourceData) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddDtmPrj("nudo");
        b.AddTriVert(1, 1.0, 2.0, 3.0);
    }
    const std::string text = ExportSurfaces(doc);
    EXPECT_NE(text.find("\t<Surfaces>\n"
                        "\t\t<Surface name=\"nudo\">\n"
                        "\t\t\t<SourceData>\n"
                        "\t\t\t\t<Boundaries>\n"
                        "\t\t\t\t</Boundaries>\n"
                        "\t\t\t\t<Breaklines>\n"
                        "\t\t\t\t</Breaklines>\n"
                        "\t\t\t</SourceData>\n"
                        "\t\t\t<Definition surfType=\"TIN\">\n"
                        "\t\t\t\t<Pnts>\n"
                        "\t\t\t\t\t<P id=\"0\">2.000000 1.000000 3.000000</P>\n"
                        "\t\t\t\t</Pnts>\n"
                        "\t\t\t\t<Faces>\n"
                        "\t\t\t\t</Faces>\n"
                        "\t\t\t</Definition>\n"
                        "\t\t</Surface>\n"
                        "\t</Surfaces>\n"),
              std::string::npos)
        << text;
}

TEST(ExportSurface, IdsStartAtZeroWhateverTheImportedIds) {
    CVantriDoc doc;
    lxetest::BuildSurfaces(doc);  // vertices had ids 10 to 13
    const std::string pnts = Between(ExportSurfaces(doc), "\t\t\t\t<Pnts>\n", "\t\t\t\t</Faces>\n");
    EXPECT_EQ(pnts,
              "\t\t\t\t<Pnts>\n"
              "\t\t\t\t\t<P id=\"0\">200.000000 100.000000 10.500000</P>\n"
              "\t\t\t\t\t<P id=\"1\">200.000000 110.000000 11.250000</P>\n"
              "\t\t\t\t\t<P id=\"2\">210.000000 110.000000 12.000000</P>\n"
              "\t\t\t\t\t<P id=\"3\">210.000000 100.000000 11.000000</P>\n"
              "\t\t\t\t</Pnts>\n"
              "\t\t\t\t<Faces>\n"
              "\t\t\t\t\t<F>0 1 2</F>\n"
              "\t\t\t\t\t<F>0 2 3</F>\n"
              "\t\t\t\t</Faces>\n");
}

TEST(ExportSurface, FacesKeepTheHostsCornerOrder) {
    CVantriDoc doc;
    {
        CLoadVantriDati b(&doc);
        b.AddDtmPrj("giro");
        for (int i = 0; i < 4; ++i) b.AddTriVert(i, i, i * i, 0.0);
        b.AddTri(2, 1, 0);  // clockwise as given
        b.AddTri(3, 0, 2);
    }
    const std::string text = ExportSurfaces(doc);
    EXPECT_TRUE(HasLine(text, "\t\t\t\t\t<F>2 1 0</F>"));
    EXPECT_TRUE(HasLine(text, "\t\t\t\t\t<F>3 0 2</F>"));
}

TEST(ExportSurface, OuterContoursAndIslandsAreNumberedApart) {
    CVantriDoc doc;
    lxetest::BuildSurfaces(doc);
    const std::string text = ExportSurfaces(doc);
    const std::string est0 = "\t\t\t\t\t<Boundary bndType=\"outer\" edgeTrim=\"true\" name=\"contornoEst0\">";
    const std::string est1 = "\t\t\t\t\t<Boundary bndType=\"outer\" edgeTrim=\"true\" name=\"contornoEst1\">";
    const std::string int0 = "\t\t\t\t\t<Boundary bndType=\"island\" edgeTrim=\"true\" name=\"contornoInt0\">";
    ASSERT_TRUE(HasLine(text, est0));
    ASSERT_TRUE(HasLine(text, est1));
    ASSERT_TRUE(HasLine(text, int0));
    // Outer contours first, though the island was added between them.
    EXPECT_LT(text.find(est1), text.find(int0));
    // Written as held: open, every triple followed by a blank.
    EXPECT_TRUE(HasLine(text, "\t\t\t\t\t\t<PntList3D>200.000000 120.000000 0.000000 200.000000 130.000000 0.000000 "
                              "205.000000 125.000000 0.000000 </PntList3D>"));
}

TEST(ExportSurface, BreaklinesAreOneSegmentEachNorthingFirst) {
    CVantriDoc doc;
    lxetest::BuildSurfaces(doc);
    const std::string text = ExportSurfaces(doc);
    EXPECT_NE(text.find("\t\t\t\t\t<Breakline name=\"vincolo1\">\n"
                        "\t\t\t\t\t\t<PntList3D>202.250000 101.500000 0.000000 207.750000 108.000000 0.000000"
                        "</PntList3D>\n"
                        "\t\t\t\t\t</Breakline>\n"),
              std::string::npos);
}

}  // namespace

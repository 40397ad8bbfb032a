#include "robot/world/map_file.h"

#include <numbers>

#include "robot/files.h"
#include "robot/sketch.h"
#include "robot/world/pgm.h"

namespace vemra::robot {
namespace {

struct MapFile : testing::Test
{
    // A map's YAML with fields replaced or added.
    std::filesystem::path yaml(const std::string& changes = "") const
    {
        std::string text;
        for (const char* field : {"image: map.pgm", "resolution: 0.05", "origin: [0, 0, 0]", "negate: 0",
                                  "occupied_thresh: 0.65", "free_thresh: 0.196"}) {
            const std::string line = field;
            const std::string name = line.substr(0, line.find(':') + 1);
            if (changes.find(name) == std::string::npos) {
                text += line + "\n";
            }
        }
        return folder_.write("map.yaml", text + changes + "\n");
    }

    std::vector<std::string> cells(const std::string& pgm, const std::string& changes = "") const
    {
        folder_.write("map.pgm", pgm);
        return sketched(readHome(yaml(changes)).home);
    }

    std::string fault(const std::string& pgm, const std::string& changes = "") const
    {
        folder_.write("map.pgm", pgm);
        return faultOf([&] { readHome(yaml(changes)); });
    }

    Folder folder_;
};

TEST_F(MapFile, PlainRawAndWidePicturesGiveTheSameHomeWithTheTopRowOnTop)
{
    const auto expected = ElementsAre("#.?", "..#");
    EXPECT_THAT(cells("P2 # plain\n3 2 255\n0 254 205\n# in between\n254 254 0\n"), expected);
    EXPECT_THAT(cells(std::string("P5\n# raw\n3 2\n255\n") + std::string("\x00\xfe\xcd\xfe\xfe\x00", 6)),
                expected);
    EXPECT_THAT(cells(std::string("P5 3 2 65535\n") +
                      std::string("\x00\x00\xfe\xfe\xcd\xcd\xfe\xfe\xfe\xfe\x00\x00", 12)),
                expected);
}

TEST_F(MapFile, ThresholdsNegateAndModeDecideWhatAGreyMeans)
{
    const std::string pgm = "P2 5 1 255 0 60 130 200 255";
    EXPECT_THAT(cells(pgm), ElementsAre("##??."));
    EXPECT_THAT(cells(pgm, "negate: 1"), ElementsAre(".??##"));
    EXPECT_THAT(cells(pgm, "free_thresh: 0.5"), ElementsAre("##..."));
    EXPECT_THAT(cells(pgm, "mode: scale"), ElementsAre("###..")) << "0.49 is nearer to occupied than to free";
    EXPECT_THAT(cells("P2 4 1 255 0 100 50 255", "mode: raw"), ElementsAre(".#??"));
}

TEST_F(MapFile, FinePixelsKeepEveryWallAndCoarseOnesAreSpread)
{
    // 25 mm a pixel: one black pixel makes its cell, half a free cell is free, less is unknown.
    EXPECT_THAT(cells("P2 6 2 255  254 254 254 205 205 205  254 0 254 205 205 254", "resolution: 0.025"),
                ElementsAre("#.?"));
    EXPECT_THAT(cells("P2 2 1 255  0 254", "resolution: 0.1"), ElementsAre("##..", "##.."));
    // 30 mm: the black pixel from 30 to 60 mm lies in the first and the second cell.
    EXPECT_THAT(cells("P2 5 1 255  254 0 254 254 254", "resolution: 0.03"), ElementsAre("##."));
}

TEST_F(MapFile, OriginShiftsAndTurnsTheMap)
{
    folder_.write("map.pgm", "P2 3 2 255  0 254 205  254 254 254");
    const Home shifted = readHome(yaml("origin: [-1.5, 0.25, 0]")).home;
    EXPECT_EQ(shifted.origin(), (PointMm{-1500, 250}));
    EXPECT_EQ(shifted.at(PointMm{-1475, 325}), CellState::Occupied);

    // A quarter turn to the left about the lower left corner: the bottom row becomes the right column.
    const Home turned = readHome(yaml("origin: [0, 0, 1.5707963267948966]")).home;
    EXPECT_THAT(sketched(turned), ElementsAre("?.", "..", "#."));
    EXPECT_NEAR(turned.origin().x, -100, 1e-9);

    // No wall gets lost at an odd angle: the black pixel is still there, at its turned place.
    const Home odd = readHome(yaml("origin: [0, 0, 0.5]")).home;
    const PointMm along = direction(degreesOfRadians(0.5));
    EXPECT_EQ(odd.at(25 * along + 75 * PointMm{-along.y, along.x}), CellState::Occupied);
}

TEST_F(MapFile, DockComesInMetresAndDegrees)
{
    folder_.write("map.pgm", "P2 1 1 255 254");
    const HomeFile home = readHome(yaml("dock: [1.25, -0.4, -90]"));
    ASSERT_TRUE(home.dock);
    EXPECT_EQ(home.dock->face, (PoseMm{{1250, -400}, {-90}}));
    EXPECT_EQ(home.dock_line, 7);
}

TEST_F(MapFile, AnAngleThatLooksLikeTheOtherUnitIsDoubted)
{
    folder_.write("map.pgm", "P2 1 1 255 254");
    const auto doubts = [this](const std::string& field) { return readHome(yaml(field)).doubts; };
    for (const char* radians : {"-1.570796", "3.141592653589793", "0.123456"}) {
        const HomeFile home = readHome(yaml(std::string("dock: [0, 0, ") + radians + "]"));
        EXPECT_THAT(home.doubts, ElementsAre(HasSubstr("can only be radians and is read as")));
        EXPECT_NEAR(home.dock->face.yaw.value, std::stod(radians) * 180 / std::numbers::pi, 1e-9);
    }
    for (const char* radians : {"1.57", "3.14", "0.785"})
        EXPECT_THAT(doubts(std::string("dock: [0, 0, ") + radians + "]"),
                    ElementsAre(AllOf(HasSubstr("map.yaml:7: "), HasSubstr("looks like radians"))))
            << radians;
    for (const char* degrees : {"0", "-90", "180", "2", "1.5", "-3", "6", "45.25"})
        EXPECT_THAT(doubts(std::string("dock: [0, 0, ") + degrees + "]"), ElementsAre()) << degrees;
    EXPECT_THAT(doubts("origin: [0, 0, 90]"),
                ElementsAre(AllOf(HasSubstr("map.yaml:6: "), HasSubstr("is in radians"))));
    EXPECT_THAT(doubts("origin: [0, 0, -3.14159]"), ElementsAre());
}

TEST_F(MapFile, FaultsOfTheYamlNameFileLineAndWhatWasExpected)
{
    const std::string good = "P2 1 1 255 254";
    const auto at_line = [&](int line, const std::string& expected) {
        return AllOf(HasSubstr("map.yaml:" + std::to_string(line) + ": "), HasSubstr(expected));
    };
    EXPECT_THAT(fault(good, "resolution: fine"), at_line(6, "\"resolution\": expected a number"));
    EXPECT_THAT(fault(good, "resolution: -0.05"), at_line(6, "from 0.001 to 10"));
    EXPECT_THAT(fault(good, "resolution: .nan"), at_line(6, "expected a number"));
    EXPECT_THAT(fault(good, "origin: [0, 0]"), at_line(6, "a list of 3 numbers"));
    EXPECT_THAT(fault(good, "negate: 2"), at_line(6, "true or false"));
    EXPECT_THAT(fault(good, "free_thresh: 0.9"), at_line(6, "at most occupied_thresh, 0.65"));
    EXPECT_THAT(fault(good, "mode: colour"), at_line(7, "trinary, scale or raw"));
    EXPECT_THAT(fault(good, "cliffs: [[1, 1, 2, 1]]"), at_line(7, "an empty box"));
    EXPECT_THAT(fault(good, "dock: here"), at_line(7, "a list of 3 numbers"));
    EXPECT_THAT(fault(good, "dock: [1,"), HasSubstr("not YAML"));
    EXPECT_THAT(fault(good, "dokc: [1, 1, 0]"), at_line(7, "no field \"dokc\": expected one of image"));
    EXPECT_THAT(fault(good, "origin: [1e308, 0, 0]"), at_line(6, "none beyond 1000000"));

    EXPECT_THAT(faultOf([&] { readHome(folder_ / "none.yaml"); }), HasSubstr("none.yaml: cannot be read"));
    folder_.write("list.yaml", "- 1\n");
    EXPECT_THAT(faultOf([&] { readHome(folder_ / "list.yaml"); }), HasSubstr("list.yaml:1: expected a map"));
    folder_.write("bare.yaml", "# a map\nimage: map.pgm\n");
    EXPECT_THAT(faultOf([&] { readHome(folder_ / "bare.yaml"); }),
                HasSubstr("bare.yaml:2: a map lacks the field \"resolution\""));
}

TEST_F(MapFile, FaultsOfThePictureNameIt)
{
    EXPECT_THAT(fault("P6 1 1 255 abc"), HasSubstr("map.pgm:1: not a PGM picture"));
    EXPECT_THAT(fault("P2\n2 2\n255\n0 0\n0"), HasSubstr("ends early"));
    EXPECT_THAT(fault("P2\n2 1\n255\n0 x  \n"), HasSubstr("map.pgm:4: expected a grey value"));
    EXPECT_THAT(fault("P2\n2 1\n100\n0 101\n"), HasSubstr("map.pgm:4: a grey value is out of range"));
    EXPECT_THAT(fault("P5 2 2 255\nabc"), HasSubstr("2 x 2 pixels expected, 3 found"));
    EXPECT_THAT(fault("P5 2 2 65535\nabcdef"), HasSubstr("2 x 2 pixels expected, 3 found"));
    EXPECT_THAT(fault("P5 0 2 255\n"), HasSubstr("the width is out of range"));
    EXPECT_THAT(fault("P5 60000 60000 255\n"), HasSubstr("too many"));
    EXPECT_THAT(fault("P5 99999999999999999999 1 255\n"), HasSubstr("the width is out of range"));
    EXPECT_THAT(fault("P2 2 1 255 0 205"), HasSubstr("no free floor"));
    EXPECT_THAT(fault("P5 100 1 255\n" + std::string(100, 'z'), "resolution: 10"),
                HasSubstr("at most 250 m a side: 100 x 1 pixels would be 1000 x 10 m"));
    EXPECT_THAT(fault("P5 24 24 255\n" + std::string(576, 'z'), "resolution: 10"),
                HasSubstr("at most 40000 m2: 24 x 24 pixels would be 240 x 240 m"));
    std::filesystem::remove(folder_ / "map.pgm");
    EXPECT_THAT(faultOf([&] { readHome(yaml()); }), HasSubstr("map.pgm: cannot be read"));
}

}  // namespace
}  // namespace vemra::robot

#include <cairo.h>

#include <cstdint>
#include <memory>

#include "robot/drawing/home_picture.h"
#include "robot/drawing/run_picture.h"
#include "robot/files.h"
#include "robot/sketch.h"

namespace vemra::robot {
namespace {

// The colour of the pixel under a point of the home, in a picture whose long side is 1000 points beside a rim
// of 24 and a head of 34.
class Pixels
{
public:
    explicit Pixels(const std::filesystem::path& png)
        : surface_(cairo_image_surface_create_from_png(png.c_str()), cairo_surface_destroy)
    {}

    std::uint32_t at(int x, int y) const
    {
        const unsigned char* row =
            cairo_image_surface_get_data(surface_.get()) +
            static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(surface_.get());
        return reinterpret_cast<const std::uint32_t*>(row)[x] & 0xffffff;
    }
    bool good() const { return cairo_surface_status(surface_.get()) == CAIRO_STATUS_SUCCESS; }

private:
    std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface_;
};

// A wall of many rows: where a row ends between two pixels the next one begins.
TEST(HomePicture, ShowsNoSeamsBetweenCellsWhateverTheirSizeInPixels)
{
    for (const int rows : {61, 117, 233, 310}) {
        const Home home = sketch(std::vector<std::string>(static_cast<std::size_t>(rows), "###"));
        const Folder folder;
        writePng(folder / "home.png", homePicture(home, {}), 2);
        const Pixels pixels(folder / "home.png");
        const int x = 2 * 24 + 3 * 2000 / rows / 2;
        for (int y = 2 * 34 + 1; y < 2 * 34 + 1999; ++y)
            ASSERT_EQ(pixels.at(x, y), pixels.at(x, 2 * 34 + 5)) << rows << " rows, line " << y;
    }
}

TEST(HomePicture, ShowsWhereTheDockIsHeardAndWhereRunsBegan)
{
    const Folder folder;
    const Home home = sketch(room(40, 40));
    const Dock dock{{{1025, 50}, {90}}};
    HomeMarks marks;
    marks.dock = dock;
    marks.robot = PoseMm{{300, 500}, {0}};
    marks.field = fieldFloor(DockField(dock), home);
    marks.starts = {{{{500, 1500}, {0}}, true}, {{{1500, 1500}, {0}}, false}};
    writePng(folder / "home.png", homePicture(home, marks));
    const Pixels pixels(folder / "home.png");
    const auto at = [&](int x, int y) { return pixels.at(24 + x / 2, 34 + 1000 - y / 2); };
    const std::uint32_t unheard = at(150, 110);
    EXPECT_NE(at(25, 1000), unheard) << "a wall";
    EXPECT_NE(at(300, 600), unheard) << "the robot";
    EXPECT_NE(at(900, 60), unheard) << "the dock";
    const std::uint32_t middle = at(1060, 1060);
    EXPECT_NE(at(700, 1060), middle) << "CentralLeft";
    EXPECT_NE(at(700, 1060), at(1350, 1060)) << "CentralRight";
    EXPECT_NE(at(700, 1060), unheard);
    EXPECT_NE(at(500, 1500), at(1500, 1500)) << "one docked, one did not";
    EXPECT_FALSE(marks.field[static_cast<std::size_t>(DockSignal::Middle)].empty());
    EXPECT_TRUE(marks.field[static_cast<std::size_t>(DockSignal::None)].empty());
}

TEST(RunPicture, ShowsTheRunTheSameEachTimeAndSurvivesOddOnes)
{
    const Folder folder;
    EventLog log;
    LogKeeper kept(isDrawn);
    log.addSink(kept);
    log.record(0, event::ModeChange{Mode::None, Mode::Charging});
    log.record(0, event::DockContact{true});
    log.record(0, event::BatteryLevel{120});
    for (std::uint64_t i = 0; i < 200; ++i) {
        log.record(20 + i, event::StationLight{"light number " + std::to_string(i)});
        log.record(20 + i, event::UserAct{"something that takes its room"});
    }
    writeSvg(folder / "a.svg", runPicture(kept.entries(), 100, "a"));
    writePng(folder / "a.png", runPicture(kept.entries(), 100, "a"));
    writePng(folder / "b.png", runPicture(kept.entries(), 100, "a"));
    EXPECT_THAT(bytesOf(folder / "a.svg"), HasSubstr("</svg>"));
    EXPECT_TRUE(bytesOf(folder / "a.png") == bytesOf(folder / "b.png"));
    EXPECT_GT(runPicture(kept.entries(), 100, "a").height, runPicture({}, 0, "nothing").height + 100);
    writePng(folder / "nothing.png", runPicture({}, 0, "nothing"));
    EXPECT_TRUE(Pixels(folder / "nothing.png").good());
}

TEST(Pictures, AFileThatCannotBeWrittenLeavesNothing)
{
    const Folder folder;
    const Picture picture = runPicture({}, 0, "nothing");
    EXPECT_THAT(faultOf([&] { writePng(folder / "none" / "a.png", picture); }),
                HasSubstr("a.png: cannot be written"));
    std::filesystem::create_directories(folder / "taken.svg");
    EXPECT_THAT(faultOf([&] { writeSvg(folder / "taken.svg", picture); }), HasSubstr("cannot be written"));
    EXPECT_FALSE(std::filesystem::exists(folder / "taken.svg.part"));
}

}  // namespace
}  // namespace vemra::robot

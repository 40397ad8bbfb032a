#include "robot/planning/rooms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <map>
#include <utility>

#include "robot/planning/planning_map.h"

namespace vemra::robot {
namespace {

constexpr std::size_t kLegCells = 40;
constexpr std::size_t kLeastRoomCells = 800;
/// A border of more cells than this is no door.
constexpr std::size_t kDoorCells = 22;
/// A flood begins in floor that is so wide, cells from the nearest wall, and narrower ones later.
constexpr int kWidest = 14;
constexpr int kNarrowest = 5;
/// A room reaches so far into what was not free floor when it was divided.
constexpr int kRimCells = 4;

/// The middle may cross a border so far; what the body must not touch lies its radius behind that.
constexpr int kCrossedCells = 2;
constexpr int kFenceFar = 8;
constexpr int kEdgeFrom = 20;
constexpr int kEdgeTo = 30;

constexpr std::array<std::pair<int, int>, 4> kSides = {{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};

using Label = std::uint16_t;

template <class Visit>
void forEachCell(const CellWindow& window, const Visit& visit)
{
    for (int row = window.low.row; row < window.end.row; ++row)
        for (int column = window.low.column; column < window.end.column; ++column)
            visit(CellIndex{column, row});
}

template <class Visit>
void forSides(CellIndex cell, const Visit& visit)
{
    for (const auto& [columns, rows] : kSides)
        visit(CellIndex{cell.column + columns, cell.row + rows});
}

/// The cells that hang together with one of them.
template <class Belongs>
std::vector<CellIndex> patchFrom(CellIndex start, Grid<unsigned char>& taken, const Belongs& belongs)
{
    std::vector<CellIndex> patch{start};
    taken.set(start, 1);
    for (std::size_t i = 0; i < patch.size(); ++i)
        forSides(patch[i], [&](CellIndex next) {
            if (taken.window().contains(next) && taken.at(next) == 0 && belongs(next)) {
                taken.set(next, 1);
                patch.push_back(next);
            }
        });
    return patch;
}

/// Small things on the floor are taken off it.
Grid<CellState> withoutLegs(const Grid<CellState>& floor)
{
    Grid<CellState> cleared = floor;
    Grid<unsigned char> taken(floor.window(), 0, 1);
    forEachCell(floor.window(), [&](CellIndex cell) {
        if (taken.at(cell) != 0 || floor.at(cell) == CellState::Free)
            return;
        const auto patch =
            patchFrom(cell, taken, [&](CellIndex next) { return floor.at(next) != CellState::Free; });
        if (patch.size() <= kLegCells)
            for (const CellIndex leg : patch)
                cleared.set(leg, CellState::Free);
    });
    return cleared;
}

/// Floods the floor, the widest first; each flood has a label.
class Flood
{
public:
    explicit Flood(const Grid<CellState>& floor) : floor_(floor), labels_(floor.window(), 0, 0)
    {
        Grid<CellState> walls = floor;
        forEachCell(floor.window(), [&](CellIndex cell) {
            walls.set(cell, floor.at(cell) == CellState::Free ? CellState::Free : CellState::Occupied);
        });
        width_ = squaredDistances(walls, CellState::Occupied, kWidest);
        for (int width = kWidest; width >= kNarrowest; --width)
            rise(width * width);
        rise(0);
    }

    [[nodiscard]] const Grid<Label>& labels() const { return labels_; }

private:
    [[nodiscard]] bool wets(CellIndex cell, int square) const
    {
        return floor_.at(cell) == CellState::Free && width_.at(cell) >= square;
    }

    // The floods spread over what is as wide as this, then new ones begin where none has come.
    void rise(int square)
    {
        std::deque<CellIndex> front;
        forEachCell(floor_.window(), [&](CellIndex cell) {
            if (labels_.at(cell) != 0)
                front.push_back(cell);
        });
        while (!front.empty()) {
            const CellIndex cell = front.front();
            front.pop_front();
            forSides(cell, [&](CellIndex next) {
                if (wets(next, square) && labels_.at(next) == 0) {
                    labels_.set(next, labels_.at(cell));
                    front.push_back(next);
                }
            });
        }
        Grid<unsigned char> taken(floor_.window(), 0, 1);
        forEachCell(floor_.window(), [&](CellIndex cell) {
            if (taken.at(cell) != 0 || labels_.at(cell) != 0 || !wets(cell, square))
                return;
            ++last_;
            for (const CellIndex wet : patchFrom(cell, taken, [&](CellIndex next) {
                     return labels_.at(next) == 0 && wets(next, square);
                 }))
                labels_.set(wet, last_);
        });
    }

    const Grid<CellState>& floor_;
    Grid<Label> labels_;
    Grid<std::uint8_t> width_{0};
    Label last_ = 0;
};

/// Floods that meet too widely for a door, and small ones, become one.
void merge(Grid<Label>& labels)
{
    for (;;) {
        std::map<Label, std::size_t> sizes;
        std::map<std::pair<Label, Label>, std::size_t> borders;
        forEachCell(labels.window(), [&](CellIndex cell) {
            const Label here = labels.at(cell);
            if (here == 0)
                return;
            ++sizes[here];
            for (const CellIndex next :
                 {CellIndex{cell.column + 1, cell.row}, CellIndex{cell.column, cell.row + 1}})
                if (const Label there = labels.at(next); there != 0 && there != here)
                    ++borders[std::minmax(here, there)];
        });
        // The longest border first: what is left of it afterwards may be a door.
        const std::pair<const std::pair<Label, Label>, std::size_t>* gives_way = nullptr;
        for (const auto& border : borders) {
            const auto& [pair, length] = border;
            const bool small = std::min(sizes[pair.first], sizes[pair.second]) < kLeastRoomCells;
            if ((small || length > kDoorCells) && (gives_way == nullptr || length > gives_way->second))
                gives_way = &border;
        }
        if (gives_way == nullptr)
            return;
        const auto [stays, goes] = gives_way->first;
        forEachCell(labels.window(), [&, stays = stays, goes = goes](CellIndex cell) {
            if (labels.at(cell) == goes)
                labels.set(cell, stays);
        });
    }
}

/// Rooms in the order of their first cell; what is no room has no number.
RoomGrid numbered(const Grid<Label>& labels)
{
    std::map<Label, std::size_t> sizes;
    forEachCell(labels.window(), [&](CellIndex cell) { ++sizes[labels.at(cell)]; });
    RoomGrid rooms(labels.window(), kNoRoom, kNoRoom);
    std::map<Label, std::uint8_t> numbers;
    forEachCell(labels.window(), [&](CellIndex cell) {
        const Label label = labels.at(cell);
        if (label == 0 || sizes[label] < kLeastRoomCells)
            return;
        if (!numbers.contains(label)) {
            if (numbers.size() + 1 >= kFirstReservedRoom)
                return;
            numbers.emplace(label, static_cast<std::uint8_t>(numbers.size() + 1));
        }
        rooms.set(cell, numbers.at(label));
    });
    return rooms;
}

// What is free tomorrow beside a room belongs to it.
void growRim(RoomGrid& rooms)
{
    for (int i = 0; i < kRimCells; ++i) {
        const RoomGrid before = rooms;
        forEachCell(rooms.window(), [&](CellIndex cell) {
            if (before.at(cell) == kNoRoom)
                forSides(cell, [&](CellIndex next) {
                    if (before.at(next) != kNoRoom)
                        rooms.set(cell, before.at(next));
                });
        });
    }
}

}  // namespace

RoomGrid divideIntoRooms(const Grid<CellState>& floor)
{
    const Grid<CellState> cleared = withoutLegs(floor);
    Grid<Label> labels = Flood(cleared).labels();
    merge(labels);
    RoomGrid rooms = numbered(labels);
    growRim(rooms);
    return rooms;
}

std::vector<RoomShape> roomsOf(const RoomGrid& rooms)
{
    std::map<std::uint8_t, RoomShape> shapes;
    forEachCell(rooms.window(), [&](CellIndex cell) {
        const std::uint8_t number = rooms.at(cell);
        if (number == kNoRoom)
            return;
        const PointMm at = centreOf(cell);
        const PointMm half{kCellMm / 2, kCellMm / 2};
        auto [entry, is_new] = shapes.try_emplace(number, RoomShape{number, 0, {}, {at - half, at + half}});
        RoomShape& shape = entry->second;
        ++shape.cells;
        shape.middle = shape.middle + at;
        shape.box.low = {std::min(shape.box.low.x, at.x - half.x), std::min(shape.box.low.y, at.y - half.y)};
        shape.box.high = {std::max(shape.box.high.x, at.x + half.x),
                          std::max(shape.box.high.y, at.y + half.y)};
    });
    std::vector<RoomShape> out;
    for (auto& [number, shape] : shapes) {
        shape.middle = (1.0 / static_cast<double>(shape.cells)) * shape.middle;
        out.push_back(shape);
    }
    return out;
}

RoomFence fenceOf(const RoomGrid& rooms, std::uint8_t number, bool within)
{
    CellWindow window = rooms.window();
    window.low = {window.low.column - kFenceFar, window.low.row - kFenceFar};
    window.end = {window.end.column + kFenceFar, window.end.row + kFenceFar};
    const auto opens = [&](CellIndex cell) {
        const std::uint8_t room = rooms.at(cell);
        return room == number || (!within && room == kNoRoom);
    };
    Grid<CellState> open(window, CellState::Occupied, CellState::Occupied);
    forEachCell(window, [&](CellIndex cell) {
        if (opens(cell))
            open.set(cell, CellState::Free);
    });
    const Grid<std::uint8_t> away = squaredDistances(open, CellState::Free, kFenceFar);
    RoomFence fence;
    const unsigned char beyond = within ? 1 : 0;
    fence.closed = Grid<unsigned char>(window, beyond, beyond);
    forEachCell(window, [&](CellIndex cell) {
        const int square = away.at(cell);
        fence.closed.set(cell, square > kCrossedCells * kCrossedCells ? 1 : 0);
        if (square >= kEdgeFrom && square < kEdgeTo)
            fence.edge.push_back(centreOf(cell));
    });
    return fence;
}

RoomGrid drawnRooms(const std::vector<std::pair<std::uint8_t, BoxMm>>& boxes)
{
    if (boxes.empty())
        return RoomGrid(kNoRoom);
    CellWindow all = cellsOf(boxes.front().second);
    for (const auto& [number, box] : boxes) {
        const CellWindow window = cellsOf(box);
        all.low = {std::min(all.low.column, window.low.column), std::min(all.low.row, window.low.row)};
        all.end = {std::max(all.end.column, window.end.column), std::max(all.end.row, window.end.row)};
    }
    RoomGrid rooms(all, kNoRoom, kNoRoom);
    for (const auto& [number, box] : boxes)
        forEachCell(cellsOf(box), [&, number = number](CellIndex cell) { rooms.set(cell, number); });
    return rooms;
}

}  // namespace vemra::robot

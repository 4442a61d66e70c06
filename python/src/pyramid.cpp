// Tile pyramids: LmPyramid with its tile arithmetic and XML form, and
// LmMultiPyramid. Several C++ out-parameters come back as one tuple.
#include "binding.h"

#include <lmspatialreference/pyramid.h>

namespace LmPython {

namespace {

using Pyramid = LmSmarterPtr<LmPyramid>;

// The XML form drops a fractional ScaleX or ScaleY (they are read back as
// integers), so a pickle carries the scales of the pyramid and of each
// sub-pyramid beside its text.
py::list Scales(LmPyramid& pyramid) {
    py::list scales;
    scales.append(py::make_tuple(pyramid.ScaleX, pyramid.ScaleY));
    if (auto* multi = dynamic_cast<LmMultiPyramid*>(&pyramid)) {
        for (auto& special : multi->Specials) scales.append(py::make_tuple(special->ScaleX, special->ScaleY));
    }
    return scales;
}

py::tuple PyramidState(LmPyramid& pyramid) { return py::make_tuple(Text(pyramid.ToString()), Scales(pyramid)); }

template <class P>
P* PyramidFromState(const py::tuple& state) {
    if (state.size() != 2) throw std::runtime_error("invalid pyramid state");
    const auto xml = state[0].cast<std::string>();
    const auto scales = state[1].cast<std::vector<std::pair<double, double>>>();
    auto* pyramid = new P;
    pyramid->FromString(xml.c_str());
    std::vector<LmPyramid*> targets{pyramid};
    if (auto* multi = dynamic_cast<LmMultiPyramid*>(pyramid)) {
        for (auto& special : multi->Specials) targets.push_back(special);
    }
    for (std::size_t i = 0; i < targets.size() && i < scales.size(); ++i) {
        targets[i]->ScaleX = scales[i].first;
        targets[i]->ScaleY = scales[i].second;
    }
    return pyramid;
}

// A tile operation that answers through four out-parameters of type T after
// its Inputs, bound by Of as a method that returns the four values as one tuple.
template <class T, class... Inputs>
struct FourOutputs {
    using Operation = bool (LmPyramid::*)(Inputs..., T*, T*, T*, T*);

    static auto Of(Operation operation) {
        return [operation](LmPyramid& p, Inputs... inputs) {
            T a{}, b{}, c{}, d{};
            (p.*operation)(inputs..., &a, &b, &c, &d);
            return py::make_tuple(a, b, c, d);
        };
    }
};

py::object HandedPyramid(const Pyramid& made) {
    return py::cast(static_cast<LmPyramid*>(made), py::return_value_policy::take_ownership);
}

// A text member as a read-write str property.
template <LmString LmPyramid::*member>
void TextProperty(py::class_<LmPyramid, Pyramid>& cls, const char* name, const char* doc) {
    cls.def_property(
        name, [](const LmPyramid& p) { return Text(p.*member); },
        [](LmPyramid& p, const std::string& text) { p.*member = LmString(text); }, doc);
}

}  // namespace

void BindPyramids(py::module_& m) {
    py::enum_<LmWellknownPyramid>(m, "LmWellknownPyramid", "The stock pyramids of LmPyramid.wellknown_pyramid.")
        .value("eGeographicPyramid", eGeographicPyramid)
        .value("eWebMercatorPyramid", eWebMercatorPyramid)
        .export_values();

    py::class_<LmPyramid, Pyramid> pyramid(
        m, "LmPyramid",
        "A tiling scheme: levels top_level_index (coarsest) to bottom_level_index, each a grid of "
        "tile_size_x by tile_size_y pixel tiles over the top tile, scale_x (scale_y) times finer per "
        "level. Map units are those of the top tile; resolutions are map units per pixel. Tile "
        "operations compute for any level, row or point, without failing.");
    pyramid.def(py::init<>(), "The 360-degree geographic pyramid.")
        .def(py::init([](const std::string& xml) { return new LmPyramid(xml.c_str()); }), py::arg("xml"),
             "The pyramid of an XML text; a text from_string rejects gives the geographic defaults.")
        .def_readwrite("top_level_index", &LmPyramid::TopLevelIndex)
        .def_readwrite("bottom_level_index", &LmPyramid::BottomLevelIndex, "The finest level, inclusive.")
        .def_readwrite("scale_x", &LmPyramid::ScaleX)
        .def_readwrite("scale_y", &LmPyramid::ScaleY)
        .def_readwrite("tile_size_x", &LmPyramid::TileSizeX, "Pixels.")
        .def_readwrite("tile_size_y", &LmPyramid::TileSizeY, "Pixels.")
        .def_readwrite("origin_row_index", &LmPyramid::OriginRowIndex)
        .def_readwrite("origin_col_index", &LmPyramid::OriginColIndex)
        .def_readwrite("from_x", &LmPyramid::FromX, "Corner of row 0, column 0 of the top tile.")
        .def_readwrite("from_y", &LmPyramid::FromY)
        .def_readwrite("to_x", &LmPyramid::ToX, "The opposite corner: columns advance toward it.")
        .def_readwrite("to_y", &LmPyramid::ToY, "Rows advance toward it.")
        .def_readwrite("x_min", &LmPyramid::XMin, "Valid data range, descriptive only.")
        .def_readwrite("y_min", &LmPyramid::YMin)
        .def_readwrite("x_max", &LmPyramid::XMax)
        .def_readwrite("y_max", &LmPyramid::YMax)
        .def_readwrite("pi", &LmPyramid::PI, "Carried and written; used by no computation.")
        .def_readwrite("tolerance", &LmPyramid::Tolerance, "Inward shrink of tile_index_range, map units.");
    TextProperty<&LmPyramid::Description>(pyramid, "description", "Free text.");
    TextProperty<&LmPyramid::PyramidID>(pyramid, "pyramid_id", "Identifier.");
    TextProperty<&LmPyramid::Name>(pyramid, "name", "Display name.");
    pyramid
        .def("create_default", &LmPyramid::CreateDefault, "Every member back to the geographic default.")
        .def("tile_index", FourOutputs<int, int, double, double>::Of(&LmPyramid::TileIndex), py::arg("level"),
             py::arg("x"), py::arg("y"),
             "(row, col, pixel_x, pixel_y) of the map point: pixel_x counts from the tile's starting "
             "edge from 0, pixel_y from its far edge from 1.")
        .def("tile_extent", FourOutputs<double, int, int, int>::Of(&LmPyramid::TileExtent), py::arg("level"),
             py::arg("row"), py::arg("col"), "(xmin, ymin, xmax, ymax) of the tile.")
        .def("tile_index_range", FourOutputs<int, double, double, double, double, int>::Of(&LmPyramid::TileIndexRange),
             py::arg("xmin"), py::arg("ymin"), py::arg("xmax"), py::arg("ymax"), py::arg("level"),
             "(min_row, min_col, max_row, max_col) of the tiles the rectangle touches, shrunk by tolerance.")
        .def("tile_extent_range", FourOutputs<double, int, int, int, int, int>::Of(&LmPyramid::TileExtentRange),
             py::arg("level"), py::arg("row1"), py::arg("col1"), py::arg("row2"), py::arg("col2"),
             "(xmin, ymin, xmax, ymax) of the union of the two tiles.")
        .def(
            "device_position",
            [](LmPyramid& p, std::tuple<int, int, int, int> anchor, int row, int col, int level) {
                const LmRect a{std::get<0>(anchor), std::get<1>(anchor), std::get<2>(anchor), std::get<3>(anchor)};
                LmRect out;
                p.DevicePosition(a, row, col, &out, level);
                return py::make_tuple(out.left, out.right, out.top, out.bottom);
            },
            py::arg("anchor"), py::arg("row"), py::arg("col"), py::arg("level"),
            "(left, right, top, bottom) device pixels of the tile on a grid anchored at anchor "
            "(left, right, top, bottom); device y grows downward.")
        .def("tile_span_x", &LmPyramid::TileSpanX, py::arg("level"), py::arg("x") = 0.0, py::arg("y") = 0.0,
             "Signed map width of one tile at level.")
        .def("tile_span_y", &LmPyramid::TileSpanY, py::arg("level"), py::arg("x") = 0.0, py::arg("y") = 0.0,
             "Signed map height of one tile at level (negative when rows run southward).")
        .def("direction_x", &LmPyramid::DirectionX, py::arg("level"), "+1 when columns advance toward larger x, else -1.")
        .def("direction_y", &LmPyramid::DirectionY, py::arg("level"), "+1 when rows advance toward larger y, else -1.")
        .def("best_level", &LmPyramid::BestLevel, py::arg("resolution"),
             "The level whose pixel size is nearest to resolution; ties go to the coarser level.")
        .def("precise_level", &LmPyramid::PreciseLevel, py::arg("resolution"),
             "A fractional level for resolution (base-2 logarithm between levels).")
        .def(
            "from_string", [](LmPyramid& p, const std::string& xml) { return p.FromString(xml.c_str()); },
            py::arg("xml"),
            "Reads an XML text whose root is Pyramid over the defaults; False, leaving the pyramid "
            "unchanged, for anything else.")
        .def(
            "to_string", [](LmPyramid& p) { return Text(p.ToString()); },
            "The indented XML text; empty on failure. A fractional scale reads back as an integer.")
        .def_static(
            "wellknown_pyramid",
            [](LmWellknownPyramid kind) { return HandedPyramid(LmPyramid::WellknownPyramid(kind)); },
            py::arg("kind"), "A new stock pyramid (an LmMultiPyramid without sub-pyramids).")
        .def("__repr__",
             [](const LmPyramid& p) {
                 return "<" + std::string(dynamic_cast<const LmMultiPyramid*>(&p) ? "LmMultiPyramid" : "LmPyramid") +
                        " '" + Text(p.Name) + "' levels " + std::to_string(p.TopLevelIndex) + ".." +
                        std::to_string(p.BottomLevelIndex) + ">";
             })
        // The package pickles a pyramid as this state (see __init__.py).
        .def("_state", &PyramidState)
        .def_static("_from_state", &PyramidFromState<LmPyramid>);

    py::class_<LmMultiPyramid, LmPyramid, LmSmarterPtr<LmMultiPyramid>>(
        m, "LmMultiPyramid",
        "A pyramid whose levels may be taken over by sub-pyramids (specials): the tile operations of "
        "a level answer from the first sub-pyramid covering it.")
        .def(py::init<>())
        .def(py::init([](const std::string& xml) { return new LmMultiPyramid(xml.c_str()); }), py::arg("xml"))
        .def_property(
            "specials", [](const LmMultiPyramid& p) { return p.Specials; },
            [](LmMultiPyramid& p, const std::vector<LmPyramid*>& specials) {
                for (auto* special : specials) {
                    if (special == nullptr) throw py::type_error("specials must be LmPyramid objects, not None");
                }
                p.Specials.assign(specials.begin(), specials.end());
            },
            "The sub-pyramids in order (a new list; assign a list to replace them).")
        .def("find_pyramid", &LmMultiPyramid::FindPyramid, py::arg("level"),
             "The first sub-pyramid whose levels hold level, or None.")
        .def_static("_from_state", &PyramidFromState<LmMultiPyramid>);
}

}  // namespace LmPython

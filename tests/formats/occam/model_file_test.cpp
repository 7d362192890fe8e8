// Mesh and model files: written, read back, spoilt.
#include "formats/occam/model_file.h"

#include "formats/occam/mesh_file.h"
#include "formats/occam/model_blocks.h"
#include "occam/setup/mesh_design.h"
#include "tests/formats/occam/made_run.h"

namespace Module_occam {
namespace {

const std::string failed = "An error occurred while reading the iteration file: ";

class ModelFileTest : public made::OccamTest {
 protected:
  int read(const std::string& text, const std::string& mesh = made::mesh) {
    (void)folder.write("MESH", mesh);
    (void)folder.write("inmodel", text);
    return read_occam_model(folder.folder(), "inmodel", sites, model);
  }

  OccamData sites;
  OccamModel model;
};

OccamMesh free_mesh(std::vector<double> widths, std::vector<double> heights) {
  OccamMesh mesh;
  mesh.node_widths = std::move(widths);
  mesh.node_heights = std::move(heights);
  return mesh;
}

TEST_F(ModelFileTest, Blocks_parameters_and_places_by_hand) {
  sites.site_offsets = {110, 175};
  ASSERT_EQ(read(made::model), 0);
  EXPECT_TRUE(interface.take_messages().empty());
  EXPECT_EQ(model.mesh.fixed_res, std::vector<double>{1000});
  EXPECT_EQ(model.mesh.node_widths, (std::vector<double>{30, 10, 20, 40}));
  EXPECT_EQ(model.mesh.min_node_width(), 10);
  EXPECT_EQ(model.mesh.min_node_height(), 5);
  EXPECT_EQ(model.mesh.mesh_code[0][3], "1???");
  EXPECT_EQ(model.num_layers(), 2);
  EXPECT_EQ(model.num_blocks(), 5);
  EXPECT_EQ(model.num_free_params, 4);
  EXPECT_EQ(model.node_x, (std::vector<double>{70, 100, 110, 130, 170}));
  EXPECT_EQ(model.node_z, (std::vector<double>{0, 5, 55}));
  EXPECT_EQ(model.column_is_block_edge, (std::vector<bool>{false, true, false, true, true}));

  struct Block {
    int layer, place, parameter;
    float width, height;
    BlockExtent extent;
    CellCode code;  // of its upper left cell
  };
  // The first and last block of a layer count as wide as their neighbours, the last layer as high as the one
  // above. The codes are indices of the table, after the one fixed resistivity.
  const Block expected[] = {{0, 0, 0, 30, 5, {0, 0, 1, 1}, {1, 1, 1, 1}},
                            {0, 1, 1, 30, 5, {0, 1, 1, 3}, {2, 2, 2, 2}},
                            {0, 2, 2, 30, 5, {0, 3, 1, 4}, {3, 3, 3, 3}},
                            {1, 0, 3, 70, 5, {1, 0, 2, 1}, {4, 4, 4, 4}},
                            {1, 1, 4, 70, 5, {1, 1, 2, 4}, {5, 5, 5, 5}}};
  for (const Block& b : expected) {
    SCOPED_TRACE(testing::Message() << "layer " << b.layer << " block " << b.place);
    const OccamBlock& block = model.layer_block(b.layer, b.place);
    EXPECT_EQ(block.layer, b.layer);
    EXPECT_EQ(block.parameter_number, b.parameter);
    EXPECT_EQ(block.block_width, b.width);
    EXPECT_EQ(block.block_height, b.height);
    EXPECT_EQ(block.block_extent.top_row, b.extent.top_row);
    EXPECT_EQ(block.block_extent.left_column, b.extent.left_column);
    EXPECT_EQ(block.block_extent.end_row, b.extent.end_row);
    EXPECT_EQ(block.block_extent.end_column, b.extent.end_column);
    const std::size_t cell = static_cast<std::size_t>(b.extent.top_row) * model.mesh.node_widths.size() +
                             static_cast<std::size_t>(b.extent.left_column);
    EXPECT_EQ(model.cell_code[cell], b.code);
  }
  EXPECT_EQ(model.param_table_index(4), 5);
  EXPECT_EQ(model.site_node, (std::vector<std::int32_t>{2, no_site_node}));
}

TEST_F(ModelFileTest, Two_sites_on_a_node_are_a_warning) {
  sites.site_offsets = {109, 111};
  ASSERT_EQ(read(made::model), 0);
  EXPECT_EQ(interface.take_messages(), made::Messages{"Two stations are located on the same node"});
  EXPECT_EQ(model.num_blocks(), 5);
}

TEST_F(ModelFileTest, Sites_go_to_the_nearest_node_inside_a_block) {
  model.node_x = {0, 10, 20, 30, 40, 50};
  model.column_is_block_edge = {false, false, true, false, true, true};
  struct Case {
    const char* name;
    std::vector<float> offsets;
    std::vector<std::int32_t> nodes;
  };
  const Case cases[] = {{"nearer to the left", {14}, {1}},
                        {"halfway goes right, off the edge", {15}, {1}},
                        {"right of an edge", {24, 26}, {3, 3}},
                        {"left of the mesh", {-5}, {0}},
                        {"beyond the mesh, the next one is tried", {51, 33}, {no_site_node, 3}},
                        {"the search never goes back", {33, 12}, {3, 3}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(place_sites(model, c.offsets), c.nodes);
  }
  EXPECT_FALSE(sites_share_node(std::vector<std::int32_t>{no_site_node, no_site_node, 3}));
}

TEST_F(ModelFileTest, The_designed_model_is_read_back_with_every_node_in_its_block) {
  const std::vector<float> nodes{1000, 1100, 1300};
  const MeshColumns columns = mesh_columns(nodes);
  const MeshRows rows = mesh_rows(24, 8.0, 20.0);
  const std::vector<LayerLines> layers = merge_blocks(columns, rows, 2.0);
  (void)folder.write("mesh", mesh_file_text(free_mesh(columns.widths, rows.heights), MeshCodes::all_free));
  sites.site_offsets = nodes;
  (void)folder.write("inmodel", model_file_text("x", 850.0, layers));
  ASSERT_EQ(read_occam_model(folder.folder(), "inmodel", sites, model), 0);
  EXPECT_EQ(model.binding_offset, 850.0);
  EXPECT_EQ(model.num_free_params, block_count(layers));
  EXPECT_EQ(model.mesh.node_widths, columns.widths);
  ASSERT_EQ(model.mesh.rows(), 29);
  for (std::size_t row = 0; row < rows.heights.size(); ++row) {
    EXPECT_NEAR(model.mesh.node_heights[row], rows.heights[row], 1e-7 * rows.heights[row] + 1e-6);
  }
  for (std::size_t layer = 0; layer < layers.size(); ++layer) {
    EXPECT_EQ(model.layers[layer].block_columns, layers[layer].block_columns);
    EXPECT_EQ(model.layers[layer].layer_rows, layers[layer].rows);
  }
  ASSERT_EQ(model.site_node, (std::vector<std::int32_t>{10, 12, 14}));
  for (std::size_t site = 0; site < nodes.size(); ++site) {
    EXPECT_EQ(model.node_x[static_cast<std::size_t>(model.site_node[site])],
              static_cast<double>(nodes[site]));
  }
}

TEST_F(ModelFileTest, Model_file_is_laid_out_in_fields) {
  EXPECT_EQ(
      model_file_text(" a line ", -150.25, {{2, std::vector<int>(26, 2)}, {4, {7, 12}}}),
      "FORMAT:           OCCAM2MTMOD_1.0\r\n"
      "MODEL NAME:       a line\r\n"
      "DESCRIPTION:      SIMPLE INVERSION\r\n"
      "MESH FILE:        MESH\r\n"
      "MESH TYPE:        PW2D\r\n"
      "STATICS FILE:     none\r\n"
      "PREJUDICE FILE:   none\r\n"
      "BINDING OFFSET:   -150.3\r\n"
      "NUM LAYERS:       2\r\n"
      "     2    26\r\n" +
          [] {
            std::string counts;
            for (int block = 0; block < 25; ++block) {
              counts += "     2";
            }
            return counts;
          }() +
          "\r\n     2\r\n"
          "     4     2\r\n"
          "     7    12\r\n"
          "NO. EXCEPTIONS:   0\r\n");
}

TEST_F(ModelFileTest, Mesh_sizes_are_written_by_their_size) {
  const OccamMesh mesh = free_mesh({729000, 1e6, 1e6, 3},
                                   {99.9999994, 100, 1000, 10000, 100000, 1e6, 1e7, 1e8, 12345678901234.0});
  const std::string text = mesh_file_text(mesh, MeshCodes::all_free);
  EXPECT_TRUE(
      text.starts_with(" MESH FILE FROM Brenlox\r\n"
                       "     0     5    10     0     0     2\r\n"
                       " 729000.000000\r\n"  // the next one fills its field and can't follow on this line
                       "1000000.000000\r\n"
                       "1000000.000000      3.000000\r\n"
                       "     99.999999     100.00000     1000.0000    10000.0000    100000.000"
                       "    1000000.00\r\n"
                       "    10000000.0     100000000\r\n"
                       "12345678901234\r\n"
                       "     0\r\n"
                       "????\r\n"))
      << text;
  (void)folder.write("mesh", text);
  EXPECT_EQ(read_mesh_file(folder.path("mesh")).node_widths, mesh.node_widths);
}

TEST_F(ModelFileTest, Long_code_lines_are_broken_and_joined) {
  for (const std::size_t columns : {1000U, 1001U, 2500U}) {
    OccamMesh mesh = free_mesh(std::vector<double>(columns, 10.0), {5.0});
    const std::string code = std::string(columns - 1, '?') + "A";
    mesh.mesh_code = {{code, code, code, code}};
    const std::string text = mesh_file_text(mesh, MeshCodes::from_mesh);
    const std::string written =
        columns == 1000 ? code + "\r\n" : code.substr(0, 1000) + "\r\n" + code.substr(1000, 1000);
    EXPECT_NE(text.find(written), std::string::npos) << columns;
    EXPECT_EQ(read_mesh_file(folder.write("mesh", text)).mesh_code[0], mesh.mesh_code[0]) << columns;
  }
  // A row that is too long is cut at the row's length.
  EXPECT_EQ(
      read_mesh_file(folder.write("mesh", made::replaced(made::mesh, "1???", "1??????"))).mesh_code[0][0],
      "1???");
}

TEST_F(ModelFileTest, The_mesh_is_found_under_either_name) {
  (void)folder.write("run/mesh", made::mesh);
  const std::string model_file = folder.path("run/inmodel");
  EXPECT_EQ(find_mesh_file("MESH", folder.folder(), model_file), folder.path("run/mesh"));
  EXPECT_EQ(find_mesh_file("", folder.folder(), model_file), "");
  EXPECT_EQ(find_mesh_file("other", folder.folder(), model_file), "");
  EXPECT_EQ(find_mesh_file(folder.path("run/MESH"), "elsewhere", model_file), folder.path("run/mesh"));
  (void)folder.write("MESH", made::mesh);
  EXPECT_EQ(find_mesh_file("MESH", folder.folder(), model_file), folder.path("MESH"));  // the run goes first
}

TEST_F(ModelFileTest, Faults_are_reported_once) {
  ASSERT_EQ(read(made::model), 0);
  struct Case {
    const char* name;
    std::string model;
    std::string mesh;
    made::Messages messages;
  };
  const auto in_model = [](const char* name, const char* part, const char* by, made::Messages messages) {
    return Case{name, made::replaced(made::model, part, by), made::mesh, std::move(messages)};
  };
  const auto in_mesh = [](const char* name, const char* part, const char* by, made::Messages messages) {
    return Case{name, made::model, made::replaced(made::mesh, part, by), std::move(messages)};
  };
  const char* counts = "     0     5     3     1     0     2";
  const Case cases[] = {
      in_model("foreign", "OCCAM2MTMOD_1.0", "OTHER", {"The file does not have the correct format"}),
      in_model("mesh type", "PW2D", "FE3D", {"The specified mesh type is not supported"}),
      in_model("no mesh", "FILE:        MESH", "FILE:        NONE",
               {"The specified mesh file does not exist"}),
      in_model("huge block count", "     1     2\n", "     1     2147483647\n",
               {"The specified mesh file is not correctly defined"}),
      in_model("huge layer count", "LAYERS:       2", "LAYERS:       2000000000",
               {failed + "the file ends behind line 15"}),
      in_model("no layers", "LAYERS:       2", "LAYERS:       -2", {failed + "the model has no layers"}),
      in_model("no blocks", "     1     3\n     1\n     2    1\n", "     1     -3\n",
               {failed + "layer 1 has a block without cells"}),
      in_model("text for a count", "     2    1\n", "     x    1\n",
               {failed + "layer 1 has a block without cells"}),
      in_model("too many columns", "     2    1\n", "     2    2\n",
               {failed + "the blocks reach beyond the 4 columns and 2 rows of the mesh"}),
      in_model("columns beyond all", "     2    1\n", "     2    -2147483648\n",
               {failed + "the blocks reach beyond the 4 columns and 2 rows of the mesh"}),
      in_model("too many rows", "     1     2\n", "     2     2\n",
               {failed + "the blocks reach beyond the 4 columns and 2 rows of the mesh"}),
      in_model("empty line", "STATICS FILE:     none", "", {}),
      in_model("exceptions cut off", "NO. EXCEPTIONS:   0\n", "", {failed + "the file ends behind line 14"}),
      in_mesh("unknown mesh", counts, "     1     5     3     1     0     2",
              {"The specified mesh type is not supported"}),
      in_mesh("fixed resistivities", counts, "     0     5     3     99999     0     2",
              {"There was an error reading the fixed resistivities"}),
      in_mesh("frequencies", counts, "     0     5     3     1     99999     2",
              {"There was an error reading the frequencies"}),
      in_mesh("widths", counts, "     0     2000000000     3     1     0     2",
              {"There was an error reading the node widths"}),
      in_mesh("heights", counts, "     0     5     2000000000     1     0     2",
              {"There was an error reading the node heights"}),
      in_mesh("no columns", counts, "     0     -2147483648     3     1     0     2",
              {failed + "MESH: the mesh has no cells"}),
      in_mesh("text for a width", "  30.0", "  wide", {failed + "MESH: the mesh has a cell of the size 0"}),
      in_mesh("table too long", "     0\n1", "     : 99999\n1",
              {failed + "MESH: the file ends behind line 16"}),
      in_mesh("codes cut off", "????\n????\n????\n????\n", "????\n??",
              {failed + "MESH: the file ends behind line 14"})};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(read(c.model, c.mesh), -1);
    EXPECT_EQ(interface.take_messages(), c.messages);
    EXPECT_EQ(model.num_blocks(), 5);
  }
}

// A reader of lines gives "?" for them, the code of a free cell.
TEST_F(ModelFileTest, NUL_bytes_are_no_codes_of_a_mesh) {
  std::string mesh = made::mesh;
  mesh.replace(mesh.rfind("????"), 2, 2, '\0');
  EXPECT_EQ(read(made::model, mesh), -1);
  EXPECT_EQ(
      interface.take_messages(),
      made::Messages{failed + "MESH: the file holds bytes that are 0, as a failing disk or transfer leaves "
                              "them"});
}

TEST_F(ModelFileTest, More_cells_than_a_model_takes_are_refused) {
  for (const int rows : {511, 512}) {
    std::vector<OccamLayer> layers(1);
    layers[0].layer_rows = rows;
    layers[0].block_columns = {1};
    OccamMesh mesh = free_mesh({10}, std::vector<double>(static_cast<std::size_t>(rows), 1.0));
    mesh.mesh_code.assign(static_cast<std::size_t>(rows), {"?", "?", "?", "?"});
    if (rows == 511) {
      EXPECT_EQ(build_model(mesh, layers, 0.0).node_z.size(), 512U);
    } else {
      EXPECT_THROW((void)build_model(mesh, layers, 0.0), std::runtime_error);
    }
  }
}

TEST_F(ModelFileTest, Files_cut_at_any_byte_end_in_at_most_one_message) {
  for (std::size_t length = 0; length < made::model.size(); length += 3) {
    (void)read(made::model.substr(0, length));
    EXPECT_LE(interface.take_messages().size(), 1U) << length;
  }
  for (std::size_t length = 0; length < made::mesh.size(); ++length) {
    (void)read(made::model, made::mesh.substr(0, length));
    EXPECT_LE(interface.take_messages().size(), 1U) << length;
  }
}

}  // namespace
}  // namespace Module_occam

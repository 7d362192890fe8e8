// made_zonge_raw.h: raw receiver files made to measure, with a layered-looking sounding in them.
#pragma once
#include <string>
#include <vector>

/// The number line and the lines of a block.
std::string made_block(int number, const std::string& lines);

/// An MT header block: type word, time, voltage, operator's line, table of inputs (columns and rows in an
/// order of their own).
std::string made_header(int number, const std::string& configuration = "VEC",
                        const std::string& spacing = "100 m");

/// A CSAMT data block of one frequency: Hy, three Ex at neighbouring stations, Hx and Ey at the first one.
std::string made_csamt(int number, double frequency, double first_station);

/// Resistivity and phase that the made blocks hold for a channel, as their decimal text says.
double made_resistivity(double frequency, int channel);
double made_phase(double frequency, int channel);

/// An AMT tensor block at one station with harmonics of a base frequency.
std::string made_amt(int number, double base_frequency, double station, const std::vector<int>& harmonics);

/// A survey's file: synchronisation, header, CSAMT blocks at `soundings` places, system check, calibration
/// and blocks of other methods between them, AMT at the end.
std::string made_zonge_raw(int soundings = 2);

/// A file of stations for it.
std::string made_stn(int stations = 8);

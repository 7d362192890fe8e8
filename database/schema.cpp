#include "database/schema.h"

#include <array>

namespace Module_database {

namespace {

constexpr std::array<TableSchema, 10> tables{{
    {"SurveyHeader", true,
     "CREATE TABLE SurveyHeader (ID COUNTER,BrenloxVersion TEXT(16),SurveyName TEXT(80),"
     "SurveyMapProjection TEXT(20),SurveyHemisphere TEXT(20),SurveyMapDatum TEXT(20),SurveySpheroid TEXT(20),"
     "GridAzimuth SINGLE,LocalXorigin DOUBLE,LocalYorigin DOUBLE,MapXorigin DOUBLE,MapYorigin DOUBLE,"
     "MapZoneNumber LONG,CalculationMethod LONG,ReductionMethod LONG)",
     "CREATE UNIQUE INDEX SurveyHeaderIndex ON SurveyHeader(ID) WITH PRIMARY"},
    {"MaskDefinitionTable", true,
     "CREATE TABLE MaskDefinitionTable (ID COUNTER,MaskDescription TEXT(255),CurrentMin SINGLE,CurrentMax "
     "SINGLE,"
     "FrequencyMin SINGLE,FrequencyMax SINGLE,SEMMax SINGLE,CagniardScatter SINGLE,EFieldScatter SINGLE,"
     "HFieldScatter SINGLE,NumUseFrequency LONG,UseFrequency LONGBINARY,Failed_0 LONG,Failed_1 LONG,Failed_2 "
     "LONG,"
     "Failed_3 LONG,Failed_4 LONG,Failed_5 LONG,Failed_6 LONG,Failed_7 LONG)",
     "CREATE UNIQUE INDEX MaskDefinitionIndex ON MaskDefinitionTable(ID) WITH PRIMARY"},
    {"FileTable", true,
     "CREATE TABLE FileTable (ID COUNTER,SurveyFile TEXT(255),DateCollected DATETIME,DateAnalysed DATETIME,"
     "LineNumber TEXT(32),Station DOUBLE,EventNumber LONG,ReferenceType LONG,ReductionType LONG,SampleRate "
     "SINGLE,"
     "DipoleLength SINGLE,StationSpacing SINGLE,Orientation SINGLE,Filter TEXT(16))",
     "CREATE UNIQUE INDEX FileIndex ON FileTable(ID) WITH PRIMARY"},
    {"ReadingsDataTable", true,
     "CREATE TABLE ReadingsDataTable (ID COUNTER,FileID LONG,StationID LONG,LocationID LONG,LineNumber "
     "TEXT(32),"
     "Station DOUBLE,EventNumber LONG,ReferenceType LONG,ReductionType LONG,DataType TEXT(8),DipoleLength "
     "SINGLE,"
     "SampleRate SINGLE,ResOffset SINGLE,PhaseOffset SINGLE,MergeFrequency SINGLE,UseReading "
     "BIT,UseResistivity BIT,"
     "UsePhase BIT,NumFrequencies long, NumFields Long,FreqBinary LONGBINARY,DataBinary LONGBINARY,"
     "MaskBinary LONGBINARY)",
     "CREATE UNIQUE INDEX ReadingsDataIndex ON ReadingsDataTable(ID) WITH PRIMARY"},
    {"ReadingsFrequencyTable", false,
     "CREATE TABLE ReadingsFrequencyTable (ID COUNTER,ReferenceType LONG,NumFrequencies long,FreqBinary "
     "LONGBINARY,"
     "MaskBinary LONGBINARY)",
     "CREATE UNIQUE INDEX ReadingsFrequencyIndex ON ReadingsFrequencyTable(ID) WITH PRIMARY"},
    {"StationsTable", true,
     "CREATE TABLE StationsTable (ID COUNTER,SurveyLine TEXT(32), Station Double,LocalX Double, LocalY "
     "Double,"
     "MapX Double,MapY Double,Elevation Double)",
     ""},
    {"LocationLookupTable", true,
     "CREATE TABLE LocationLookupTable (ID COUNTER,SurveyLine TEXT(32), Station Double,LocalX Double, LocalY "
     "Double,"
     "MapX Double,MapY Double,Elevation Double)",
     ""},
    {projection_table_name, true,
     "CREATE TABLE [Projection Defintion Table] (ID LONG,Name TEXT(32),Projection Long,Datum Long,Hemisphere "
     "Long,"
     "OriginLongitude Double, OriginLatitude Double,StandardParallel1 Double,StandardParallel2 Double,"
     "FalseEasting DOUBLE,FalseNorthing DOUBLE,ScaleFactor DOUBLE,ZoneWidth Long,ZoneNumber Long)",
     "CREATE UNIQUE INDEX [Projection Defintion Table] ON [Projection Defintion Table](ID, Name) WITH "
     "PRIMARY"},
    {"SitesTable", false,
     "CREATE TABLE SitesTable (ID COUNTER,SurveyLine TEXT(32),Station DOUBLE,SiteName TEXT(64),Latitude "
     "DOUBLE,Longitude DOUBLE,Elevation DOUBLE,Datum TEXT(20),EySign LONG,SurveyFile TEXT(255))",
     "CREATE UNIQUE INDEX SitesIndex ON SitesTable(ID) WITH PRIMARY"},
    {"ReadingFactsTable", false,
     "CREATE TABLE ReadingFactsTable (ID COUNTER,ReadingID LONG,NumFrequencies LONG,ErrorBinary "
     "LONGBINARY,EyTurned LONG,HxAzimuth SINGLE)",
     "CREATE UNIQUE INDEX ReadingFactsIndex ON ReadingFactsTable(ID) WITH PRIMARY"},
}};

// One index for each kind of search: a file by name and date, a line's files, a file's readings, a station's
// curves, a line's curves of a reduction and of all, a station by its name, a location by its place, a
// station's site, a reading's facts.
constexpr std::array<std::string_view, 11> search_indexes{
    "CREATE INDEX IF NOT EXISTS FileNameSearch ON FileTable(SurveyFile,DateCollected,EventNumber)",
    "CREATE INDEX IF NOT EXISTS FileLineSearch ON FileTable(LineNumber,ReferenceType)",
    "CREATE INDEX IF NOT EXISTS ReadingsFileSearch ON "
    "ReadingsDataTable(FileID,SampleRate,EventNumber,DataType)",
    "CREATE INDEX IF NOT EXISTS ReadingsStationSearch ON "
    "ReadingsDataTable(StationID,ReductionType,ReferenceType,"
    "SampleRate,DataType,DipoleLength)",
    "CREATE INDEX IF NOT EXISTS ReadingsLineSearch ON ReadingsDataTable(ReductionType,LineNumber,Station)",
    "CREATE INDEX IF NOT EXISTS ReadingsPlaceSearch ON ReadingsDataTable(LineNumber,Station)",
    "CREATE INDEX IF NOT EXISTS StationSearch ON StationsTable(SurveyLine,Station)",
    "CREATE INDEX IF NOT EXISTS LocationSumSearch ON LocationLookupTable(LocalX + LocalY)",
    "CREATE INDEX IF NOT EXISTS LocationNameSearch ON LocationLookupTable(SurveyLine,Station)",
    "CREATE INDEX IF NOT EXISTS SiteSearch ON SitesTable(SurveyLine,Station)",
    "CREATE INDEX IF NOT EXISTS ReadingFactsSearch ON ReadingFactsTable(ReadingID)",
};

}  // namespace

std::span<const TableSchema> survey_tables() { return tables; }

void create_table(dao::Database& database, const TableSchema& table) {
  database.execute(table.create_table);
  if (!table.create_index.empty()) {
    database.execute(table.create_index);
  }
}

void create_search_indexes(dao::Database& database) {
  for (const std::string_view statement : search_indexes) {
    database.execute(statement);
  }
}

}  // namespace Module_database

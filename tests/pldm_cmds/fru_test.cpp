// SPDX-License-Identifier: Apache-2.0
/** FRU table and firmware version. */
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include <gtest/gtest.h>

using namespace vantric;

namespace {

/** One field of a FRU record. */
Bytes Field(std::uint8_t type, const Bytes& value) {
    return Bytes{type, static_cast<std::uint8_t>(value.size())}.Add(value);
}

Bytes Field(std::uint8_t type, std::string_view text) {
    return Field(type, Bytes().Add(text));
}

/** A FRU record of the given fields. */
Bytes Record(std::uint8_t recordType, std::uint8_t fieldCount, const Bytes& fields,
             std::uint8_t encoding = 1) {
    return Bytes{1, 0, recordType, fieldCount, encoding}.Add(fields);
}

/** An answer to GetFRURecordTable. */
Answer Table(std::uint32_t nextHandle, std::uint8_t flag, const Bytes& data) {
    return Good(Bytes().Add(nextHandle).Add(flag).Add(data));
}

/** An endpoint whose metadata is known. */
class FruEndpoint : public ScriptedEndpoint {
public:
    explicit FruEndpoint(std::uint32_t length = 1000, std::uint16_t records = 1) {
        Supports(4);
        Data().fruTableLength = length;
        Data().fruRecordCount = records;
    }

    /** What comes of one table. */
    std::shared_ptr<__FRUContents> Parse(const Bytes& table) {
        Answers({Table(0, 5, table)});
        EXPECT_EQ(cmds.GetFRUContents(), 0);
        return Data().fruContents;
    }
};

TEST(GetFRUMetaData, StoresLengthAndCount) {
    ScriptedEndpoint endpoint;
    const CapturedLog log;
    EXPECT_EQ(endpoint.cmds.GetFRUMetaData(), 5);
    EXPECT_EQ(endpoint.Asked(), 0U);
    EXPECT_EQ(log.Count(1, "PLDM FRU not supported for EID = 9\n"), 1);

    endpoint.Supports(4).Answers(
        {Good({0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0x11, 0x22, 0x03, 0, 0xEE, 0xEE, 7, 1})});
    EXPECT_EQ(endpoint.cmds.GetFRUMetaData(), 0);
    EXPECT_EQ(endpoint.Data().fruTableLength, 0x032211U);
    EXPECT_EQ(endpoint.Data().fruRecordCount, 0x0107);
    EXPECT_EQ(log.Count(4, "FRU Table Length = 205329\n"), 1);
    EXPECT_EQ(log.Count(4, "Total Number of Records in Table = 263\n"), 1);
}

TEST(GetFRUContents, FieldRules) {
    struct Row {
        const char* name;
        Bytes table;
        std::string serialNumber; ///< "-" where there are no contents at all
        std::string iana = "";
        std::string line = ""; ///< in the log: level and message
    };
    const Bytes sn = Field(4, "SN123");
    const std::string notPrintable = "1 Not Printable string for FRU type = 4\n";
    const std::string unused = "4 OEM FRU field of type 4 is not used\n";
    const std::string cut = "2 FRU table of EID = 9 ends within a field\n";
    const std::vector<Row> rows{
        {"plain", Record(1, 1, sn), "SN123"},
        {"only as many as counted", Record(1, 1, Field(2, "M").Add(sn)), ""},
        {"none counted", Record(1, 0, sn), ""},
        {"later replaces earlier", Record(1, 2, Field(4, "A").Add(sn)), "SN123"},
        {"empty replaces", Record(1, 2, Bytes(sn).Add(Field(4, ""))), ""},
        {"unprintable keeps", Record(1, 2, Bytes(sn).Add(Field(4, "B\x01"))), "SN123", "",
         notPrintable},
        {"delete is unprintable", Record(1, 2, Bytes(sn).Add(Field(4, "B\x7F"))), "SN123", "",
         notPrintable},
        {"not ASCII keeps", Record(1, 2, Bytes(sn).Add(Field(4, "B\xE4"))), "SN123", "",
         notPrintable},
        {"type 0 length 0 ends", Record(1, 3, Bytes{0, 0}.Add(sn)), ""},
        {"type 0 is dropped", Record(1, 2, Field(0, "x").Add(sn)), "SN123", "",
         "4 Type = 0 : Value = [x]\n"},
        {"type 16 is dropped", Record(1, 2, Field(16, "x").Add(sn)), "SN123", "",
         "4 Type = 16 : Value = [x]\n"},
        {"value runs past the table", Record(1, 2, Bytes(sn).Add({4, 9, 'A'})), "SN123", "", cut},
        {"field runs past the table", Record(1, 2, Bytes(sn).Add({4})), "SN123", "", cut},
        {"more counted than there are", Record(1, 9, sn), "SN123"},
        {"OEM record", Record(254, 1, sn), "", "", unused},
        {"OEM field runs past the table", Record(254, 2, Bytes(sn).Add({4, 9})), "", "",
         unused + cut},
        {"record type 2", Record(2, 1, sn), "-", "", "4 Record type is [2] is not supported\n"},
        {"encoding 2", Record(1, 1, sn, 2), "-", "", "4 Encoding type is [2] is not supported\n"},
        {"short date", Record(1, 1, Field(6, {1})), "", "", "1 Invalid timestamp size 1\n"},
        {"second record", Record(1, 0, {}).Add(Record(1, 1, sn)), ""},
        {"empty table", {}, "-", "", "4 Encoding type is [0] is not supported\n"},
        {"short IANA", Record(1, 1, Field(15, {1, 2})), "", "513"},
        {"IANA of three bytes", Record(1, 1, Field(15, {1, 2, 3})), "", "197121"},
        {"empty IANA", Record(1, 1, Field(15, Bytes())), "", "0"},
        {"largest IANA", Record(1, 1, Field(15, Bytes(4, 0xFF))), "", "4294967295"},
        {"text after IANA", Record(1, 1, Field(15, {0x8C, 0x1A, 0, 0, 'x'})), "", "6796x"},
        {"NUL after IANA", Record(1, 1, Field(15, {0x8C, 0x1A, 0, 0, 0})), "", "",
         "1 Not Printable string for FRU type = 15\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const CapturedLog log;
        FruEndpoint endpoint;
        const auto contents = endpoint.Parse(row.table);
        EXPECT_EQ(contents ? contents->SN : "-", row.serialNumber);
        EXPECT_EQ(contents ? contents->IANA : "", row.iana);
        EXPECT_TRUE(std::ranges::equal(endpoint.Data().fruTable, row.table));
        std::string lines;
        for (const auto& line : log.Lines()) {
            const bool taken = line.message.find(", Value = ") != std::string::npos;
            lines += taken ? "" : std::to_string(line.level) + ' ' + line.message;
        }
        EXPECT_EQ(lines, row.line);
    }
}

TEST(GetFRUContents, PutsPartsTogether) {
    const CapturedLog log;
    const Bytes table = Record(1, 2, Field(2, "Model X").Add(Field(4, "SN123")));
    FruEndpoint endpoint;
    endpoint.Answers({Table(0x22, 1, Slice(table, 0, 6)), Table(0x33, 3, {9, 9}),
                      Table(0x44, 0, Slice(table, 6, 9)),
                      Table(0, 4, Slice(table, 9, table.size()))});
    EXPECT_EQ(endpoint.cmds.GetFRUContents(), 0);
    EXPECT_EQ(endpoint.Data().fruContents->Model, "Model X");
    EXPECT_EQ(endpoint.Data().fruContents->SN, "SN123");
    EXPECT_EQ(log.Count(4, "Type = 4, Value = SN123\n"), 1);
    const auto& requests = endpoint.transport.requests;
    EXPECT_EQ(requests[1], (Bytes{0x82, 4, 2, 0x22, 0, 0, 0, 0}));
    EXPECT_EQ(requests[2], (Bytes{0x83, 4, 2, 0x22, 0, 0, 0, 0})) << "the stray flag is repeated";
    EXPECT_EQ(requests[3], (Bytes{0x84, 4, 2, 0x44, 0, 0, 0, 0}));
}

TEST(GetFRUContents, HasRoomForTheLowSixteenBitsOfTheLength) {
    for (const std::uint32_t length : {0U, 0x30000U}) {
        FruEndpoint endpoint(length);
        EXPECT_FALSE(endpoint.Parse(Record(1, 1, Field(4, "SN123"))));
        EXPECT_EQ(endpoint.transport.capacities[0], 9U) << length;
        EXPECT_EQ(endpoint.transport.buffers[0], 9U) << length;
    }
}

TEST(GetFRUContents, AsksForAsManyTablesAsThereAreRecords) {
    FruEndpoint endpoint(1000, 3);
    const Bytes serialNumber = Record(1, 1, Field(4, "SN"));
    endpoint.Answers({Table(4, 1, Cut(serialNumber)), Table(5, 4, {'N'}),
                      Table(6, 2, Record(1, 1, Field(2, "Model X"))),
                      Table(7, 5, Record(254, 0, {}))});
    EXPECT_EQ(endpoint.cmds.GetFRUContents(), 0);
    ASSERT_EQ(endpoint.Asked(), 4U);
    EXPECT_EQ(endpoint.transport.requests[2], (Bytes{0x83, 4, 2, 5, 0, 0, 0, 1}));
    EXPECT_EQ(endpoint.Data().fruContents->SN, "SN") << "contents of a table before stay";
    EXPECT_EQ(endpoint.Data().fruContents->Model, "Model X");

    endpoint.Answers({Table(0, 5, serialNumber)});
    EXPECT_EQ(endpoint.cmds.GetFRUContents(), 0) << "no next handle is the end, too";
    EXPECT_EQ(endpoint.Asked(), 5U);
}

TEST(GetFRUContents, EndsWithAnEndpointThatNeverDoesAndKeepsItsFirstRecord) {
    struct Row {
        const char* name;
        Answer answer;
        int status;
        std::string serialNumber;
        std::size_t asked;
    };
    const Bytes good = Record(1, 1, Field(4, "SN123")).AddZeros(900);
    const std::vector<Row> rows{
        {"nothing ever", Table(1, 0, {}), 1, "-", 16},
        {"no meaning", Table(1, 3, good), 1, "-", 16},
        {"no meaning either", Table(1, 9, good), 1, "-", 16},
        {"empty tables", Table(1, 5, {}), 0, "-", 8193},
        {"one endless table", Table(1, 1, good), 0, "SN123", 288},
        {"endless tables", Table(1, 5, good), 0, "SN123", 1150},
        {"small parts without end", Table(1, 0, {1}), 0, "", 8193},
    };
    for (const auto& row : rows) {
        FruEndpoint endpoint(1000, 65535);
        endpoint.transport.respond = [&](const Bytes&) { return row.answer; };
        EXPECT_EQ(endpoint.cmds.GetFRUContents(), row.status) << row.name;
        const auto& contents = endpoint.Data().fruContents;
        EXPECT_EQ(contents ? contents->SN : "-", row.serialNumber) << row.name;
        EXPECT_LE(endpoint.Data().fruTable.size(), 256U * 1024) << row.name;
        EXPECT_EQ(endpoint.Asked(), row.asked) << row.name;
    }
}

TEST(Timestamp, NeedsThirteenBytesAndAReliableTime) {
    const CapturedLog log;
    const Bytes value{1, 2, 3, 4, 5, 59, 58, 23, 31, 12, 0x0F, 0x27, 0xF0};
    EXPECT_EQ(convertToTimestamp104(value), "9999-12-31 - 23:58:59");
    EXPECT_EQ(convertToTimestamp104(Bytes(13, 0)), "0-00-00 - 00:00:00");
    Bytes unreliable = value;
    unreliable[12] = 0x0F;
    EXPECT_EQ(convertToTimestamp104(unreliable), "");
    EXPECT_EQ(convertToTimestamp104(Bytes()), "");
    EXPECT_EQ(log.Messages(1),
              (std::vector<std::string>{"Ignore the timestamp because time resolution is 15\n",
                                        "Invalid timestamp size 0\n"}));
    EXPECT_EQ(convertToTimestamp104(Bytes(20, 0xFE)), "65278-254-254 - 254:254:254");
}

/** An answer to GetFirmwareParameters, with the length that the endpoint claims. */
Answer Firmware(std::uint8_t length, const Bytes& text) {
    Bytes data(10, 0xEE);
    data[7] = length;
    return Good(data.Add(text));
}

TEST(GetFWParameters, ReturnsTheBytesAsTheyStand) {
    const CapturedLog log;
    ScriptedEndpoint endpoint;
    EXPECT_EQ(endpoint.cmds.GetFWParameters(), "");
    EXPECT_EQ(endpoint.Asked(), 0U);
    EXPECT_EQ(log.Count(4, "PLDM FW Update not supported for EID = 9\n"), 1);

    endpoint.Supports(5);
    const std::string longest(255, 'v');
    const std::string utf16("1\0.\0", 4);
    endpoint.Answers({Firmware(5, Bytes().Add("1.2.3pending")), Firmware(0, {}),
                      Firmware(255, Bytes().Add(longest).Add("more")),
                      Firmware(4, Bytes().Add(utf16)), Firmware(9, Bytes().Add("1.2")), Good()});
    for (const auto& expected :
         {std::string("1.2.3"), std::string(), longest, utf16, std::string("1.2"), std::string()}) {
        EXPECT_EQ(endpoint.cmds.GetFWParameters(), expected);
    }
    EXPECT_EQ(log.Count(4, "FWVersion = 1.2.3 for Slot = 3\n"), 1);
    EXPECT_EQ(log.Count(4, "FWVersion =  for Slot = 3\n"), 2);
}

} // namespace

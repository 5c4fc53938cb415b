#ifndef BOREALIS_HUB_RECORD_HEADERS_H
#define BOREALIS_HUB_RECORD_HEADERS_H

#include <cstdint>

// The header lines that name the columns of each record type. Clients parse
// them, so the texts are fixed to the byte.

// Data records, always followed by the DIAG header.
inline constexpr char kDataHeader[] =
    "DATAH\tMSEC\tSECONDS\tNANOSECONDS\tDIAG\tCH4D\tCH4\tTEMP\tPRESSURE\tRSSI\tDROPRATE\t"
    "AUX1\tAUX2\tAUX3\tAUX4\tAUX5\tAUX6\tAUX7\tAUX8\tAUXTC1\tAUXTC2\tAUXTC3\tCHK\n";

// The names of the DIAG bits: the i-th name after the type word is bit i.
inline constexpr char kDiagHeader[] =
    "DATADIAGH\tBOXCONNECTED\tBADAUXTC3\tBADAUXTC2\tBADAUXTC1\tMOTORFAILURE\tCALIBRATING\t"
    "BOTTOMHEATERON\tTOPHEATERON\tPUMPON\tMOTORSPINNING\tBLOCKTEMPUNREG\tLASERTEMPUNREG\t"
    "BADTEMP\tREFUNLOCKED\tNOSIGNAL\tNOTREADY\n";

// Status records.
inline constexpr char kStatusHeader[] =
    "DATASTATH\tMSEC\tSECONDS\tNANOSECONDS\tDIAG\tRSSI\tREFRSSI\tLCTSETPT\tLCTACTUAL\t"
    "BCTSETPT\tBCTACTUAL\tCHASSISTEMP\tOPTICSTEMP\tOPTICSRH\tAUXREFTEMP\tMOTORSETPT\t"
    "MOTORACTUAL\tUSB\tUSBCAPACITY\tUSBFREESPACE\tREF\tGND\tOPTICSTDELTA\tBOTTOMHEATERW\t"
    "TOPHEATERW\tCHK\n";

// Analog outputs, sent to the interface box.
inline constexpr char kDacsHeader[] =
    "DATADACSH\tSECONDS\tNANOSECONDS\tDAC1\tDAC2\tDAC3\tDAC4\tDAC5\tDAC6\tCHK\n";

// Data clock records.
inline constexpr char kClockHeader[] = "DATACLOCKH\tSECONDS\tNANOSECONDS\tDATE\tTIME\tCHK\n";

// Clock synchronisation records.
inline constexpr char kClockSyncHeader[] =
    "DATACLOCKSYNCH\tSECONDS\tNANOSECONDS\tDRIFT\tLASTMINDRIFT\tCLOCKYZ\tCHK\n";

// Test records.
inline constexpr char kTestHeader[] =
    "DATATESTH\tCH0\tCH1\tCH2\tCH3\tREFTHERM\tTC0\tTC1\tTC2\tVOLTREF\tGND\tCHASSISTEMP\t"
    "AIRPRES\tOPTICSRH\tREFTEMP\tDETECTORGND\tAIRTEMP\tLASERTEMP\tLASERBLOCKTEMP\tSAMPLEAC\t"
    "SAMPLEDC\tREFAC\tREFDC\tCHK\n";

// The DIAG bits the hub adds to a data record itself; the processor's bits
// are DSPDiag and the mirror and heater device's are WashMe::Diag. Nothing
// sets CALIBRATING: it is always 0.
struct HubDiag {
    static constexpr std::uint32_t BOXCONNECTED = 0x0001;
    static constexpr std::uint32_t CALIBRATING = 0x0020;
};

#endif

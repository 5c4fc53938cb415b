#ifndef BOREALIS_HUB_ANALYZER_SETTINGS_H
#define BOREALIS_HUB_ANALYZER_SETTINGS_H

class DSPDevice;
class Doc4410;
class Platform;
class WashMe;

// Applies the document's line-lock settings and factory constants to the
// signal processor, the programmable logic's device files and the mirror.
class AnalyzerSettings {
public:
    AnalyzerSettings(Doc4410& doc, DSPDevice& dsp, WashMe& mirror, Platform& platform, bool debug);

    // The line-lock targets follow the factory constants: the cooler
    // regulates at the laser start temperature, the block at the block
    // start temperature.
    void DeriveLineLockTargets();
    // The block regulates at the start temperature of the range
    // (0 "low", 1 "high"), then the changed line-lock controls are sent.
    void ApplyTempRange(int temprange);
    // Sends the block's control when linelock/laserblock changed, then the
    // cooler's when linelock/lasercooler changed.
    void SendLineLockControls();
    // Sends every factory constant, changed or not (a debug line first).
    void SendFactoryConstants();
    // Sends the factory constants that changed.
    void SendChangedFactoryConstants();
    // The laser set-up message from the factory constants.
    void SendLineLockSetup();

private:
    void SendOffsets();
    // Writes offset1, delta1, offset2 and delta2 to the programmable logic's
    // files, with root rights. Throws std::runtime_error when one cannot be
    // written.
    void WriteDeviceFiles();
    void PrintFactoryConstants() const;

    Doc4410& doc_;
    DSPDevice& dsp_;
    WashMe& mirror_;
    Platform& platform_;
    const bool debug_;
};

#endif

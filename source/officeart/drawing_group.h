// The drawing group of a binary workbook: the OfficeArtDggContainer carried by the MsoDrawingGroup
// record. It holds the shape numbering of all drawings (OfficeArtFDGGBlock) and the picture store
// (OfficeArtBStoreContainer): one OfficeArtFBSE per picture with its blip embedded. Sheets refer
// to a picture by its 1-based store number (pib).
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "officeart/officeart_record.h"

namespace zelvar {

// Blip kinds, by the public picture type.
enum class BlipKind { Png = 0, Jpeg = 1, Wmf = 2, Dib = 3, Emf = 4, Pict = 5, Tiff = 6 };

// What a blip record holds: the image bytes (as stored, headers of the record skipped) and its
// pixel size as far as the bytes tell.
struct BlipView {
    BlipKind kind = BlipKind::Png;
    const uint8_t* data = nullptr;
    size_t size = 0;
    int width = 0, height = 0;
};

// Parses a blip record (header + body): "error in record OfficeArtBlipPNG" and its like for an
// instance that the kind does not know or a body too short for its fixed fields.
BlipView readBlip(const OfficeArtRecordHeader& header, const uint8_t* body, size_t len);
// Pixel size of a JPEG from its frame header; 0, 0 when the walk finds none. Throws "invalid jpg
// file" when the bytes do not start FF D8.
void jpegSize(const uint8_t* data, size_t size, int* width, int* height);
// The blip record for image bytes of a kind; placeable and file headers are cut off first.
ArtNode makeBlip(BlipKind kind, const uint8_t* data, size_t size, uint8_t uid[16]);
// Kind of a block by its first bytes (addPicture2), or throws "unknown picture format".
BlipKind sniffPicture(const uint8_t* data, size_t size);
// Kind by the last four characters of a file name (addPicture), or throws.
BlipKind pictureKindByName(const std::wstring& name);

class DrawingGroup {
public:
    bool present() const { return !_records.empty(); }
    // True when the group came from a loaded file; new groups number their shapes by fixed rules.
    bool fromFile() const { return _fromFile; }
    bool modified() const { return _modified; }
    void clear();
    // The OfficeArt bytes of the MsoDrawingGroup record and its continuations, joined. A group
    // that does not read as one stays with the book as its records are; only the operations on
    // pictures then fail, with what was wrong in it.
    void load(const std::vector<uint8_t>& bytes);
    // Whether the loaded group could not be read.
    bool unreadable() const { return !_error.empty(); }
    // Builds the default group of a book that has none (initMsoDrawingGroup).
    void initDefault();
    std::vector<uint8_t> bytes() const;

    // Appends an FBSE with its blip; the 0-based picture id.
    int addPicture(BlipKind kind, const uint8_t* data, size_t size);
    // Pictures are the blips of the store, in order.
    int pictureCount() const;
    BlipView picture(int index) const;
    // The 0-based blip number behind the 1-based FBSE number, or -1.
    int blipIndexForPib(int pib) const;
    int fbseCount() const;
    // The 1-based FBSE number whose blip is the index-th picture; "pictureId is out of range".
    int pibForPicture(int index) const;
    // One more sheet uses the picture; "pictureId is out of range" for an unknown pib.
    void addPicRef(int pib);
    uint32_t cRef(int pib) const;

    // Shape numbering of loaded groups: a new drawing id, and a shape id for a drawing, the
    // preferred one when its cluster belongs to that drawing (by the table, or because the
    // drawing's own last shape lies in it), else the first of a new cluster.
    uint32_t newDrawingId();
    uint32_t allocateShape(uint32_t dgid, uint32_t preferred, bool drawingsCluster = false);
    struct Cluster {
        uint32_t dgid = 0, cspidCur = 0;
    };
    struct Numbers {
        uint32_t spidMax = 0, cidcl = 1, cspSaved = 0, cdgSaved = 0;
        std::vector<Cluster> clusters;
    };
    Numbers numbers() const;

private:
    ArtNode* dgg();
    const ArtNode* dgg() const;
    ArtNode* store();
    const ArtNode* store() const;
    void setNumbers(const Numbers& numbers);
    // The FBSE nodes of the store, in order.
    std::vector<const ArtNode*> fbses() const;
    // The blip of a store entry (embedded in an FBSE or standing alone), or false.
    static bool blipOf(const ArtNode& entry, OfficeArtRecordHeader& header, const uint8_t*& body, size_t& len);

    // Throws what made a loaded group unreadable.
    void usable() const;

    std::vector<ArtNode> _records;
    std::string _error;
    bool _fromFile = false;
    bool _modified = false;
};

}  // namespace zelvar

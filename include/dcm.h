/**
 * @file dcm.h
 * Reads descriptions of the hardware of a modular network element: a query parses one XML file and decodes one frame,
 * slot or card type of it into a fixed-size record.
 *
 * **Results.** A query, decoder or text-to-value converter returns 0, or -1 after it has reported the cause. Each
 * report goes, with the same format and arguments, to the platform's `loggingLogOutput` (0, 3, 0, ...) and to standard
 * output, innermost failure first. Some faults are reported, ignored, and leave the result at 0: those of an LED's
 * states, of the names, sources and state pairs in an LED map, of a component's class and of a sensor's type. A
 * value-to-text converter always returns a text.
 *
 * **Ownership.** The caller owns the records. The library keeps no pointer to them, allocates nothing that outlives a
 * call, and has no state between calls: each query parses its file again.
 *
 * **Threads.** Every function may run in any number of threads at once, as long as no two of them write the same record
 * and libxml2's `xmlInitParser` has run once in the process. Every call fits into a stack of 64 KiB.
 *
 * **libxml2.** Queries and decoders change none of libxml2's settings and handlers. They replace the calling thread's
 * last libxml2 error (`xmlGetLastError`), also when they succeed. The tree that is passed to a decoder need not belong
 * to a document.
 *
 * **Numbers in a description** are decimal, hexadecimal ("0x10") or octal ("010"). A text that is not a number counts
 * as 0, and a field keeps the low bits that fit.
 *
 * **Bit arrays.** Bit i, counted from 0, is the mask 0x80 >> (i % 8) of byte i / 8. A list of slots, ports or ids,
 * which count from 1, has number n in bit n - 1. A capability set has value v in bit v, except for transceivers, whose
 * values count from 1: value v is in bit v - 1. The example programs print each set as words.
 *
 * **Texts** in a record are zero-terminated unless they fill their field; print them with a precision ("%.*s").
 *
 * **The platform.** The library calls four functions and defines none of them. The process that links it does, with C
 * linkage:
 *
 *     void loggingLogOutput(int module, int level, int flags, const char *format, ...);  // printf's format
 *     int errnoGet(void);                      // the calling thread's last error number, as errno
 *     uint32_t zorSelfSysIndex(void);          // the index of this system
 *     int hwalEttPhy2Logical(const DcmEttInfo *physical, uint32_t *logicalIndex);   // entity to logical index
 *
 * **NULL** is allowed where a comment says so. Elsewhere GCC and Clang warn of it (#DCM_NONNULL).
 */
#ifndef DCM_H
#define DCM_H

#include <stdint.h>

/** Marks a function or table that the library exports. */
#if defined(__GNUC__)
#define DCM_API __attribute__((visibility("default")))
#else
#define DCM_API
#endif

/** Marks the arguments, counted from 1, that must not be NULL. */
#if defined(__GNUC__)
#define DCM_NONNULL(...) __attribute__((nonnull(__VA_ARGS__)))
#else
#define DCM_NONNULL(...)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** An element of a parsed document: libxml2's node type, so that an `xmlNodePtr` fits. */
struct _xmlNode;

/** @name Array bounds and text sizes of the records */
/** @{ */
enum {
    DCM_SLOT_MAX = 32,             /**< slots of a frame */
    DCM_SLOT_CARD_TYPE_MAX = 64,   /**< card types that a slot of a frame lists */
    DCM_CARD_TYPE_CAP_MAX = 8,     /**< card type capability words of a frame */
    DCM_FAN_CTRL_MAX = 4,          /**< fan controllers of a frame or slot */
    DCM_FAN_MODULE_MAX = 3,        /**< fan modules of a frame */
    DCM_FAN_MAX = 4,               /**< fans of a fan module */
    DCM_POWER_MAX = 2,             /**< power supplies of a frame or slot */
    DCM_UNIT_TEMPERATURE_MAX = 2,  /**< temperature sensors of a fan module or power supply */
    DCM_LED_MAX = 16,              /**< LEDs of a frame, fan module, power supply or card */
    DCM_LED_STATE_MAX = 12,        /**< state displays of an LED, and pairs of a state map */
    DCM_LED_MAP_MAX = 12,          /**< entries of an LED map */
    DCM_PORT_LED_MAX = 3,          /**< port LED runs of a card */
    DCM_INNER_IF_MAX = 32,         /**< inner ports of a slot, and switch-fabric ports of a slot */
    DCM_METH_IF_MAX = 4,           /**< management ports of a card */
    DCM_PANEL_IF_MAX = 64,         /**< panel ports of a card */
    DCM_GCC_IF_MAX = 2,            /**< GCC ports of a card */
    DCM_ETHPPP_IF_MAX = 4,         /**< ethppp ports of a card */
    DCM_CPU_MAX = 1,               /**< CPUs of a card */
    DCM_MEMORY_MAX = 2,            /**< memories of a card */
    DCM_CARD_TEMPERATURE_MAX = 6,  /**< temperature sensors of a card */
    DCM_VOLTAGE_MAX = 10,          /**< voltage sensors of a card */
    DCM_COMPONENT_MAX = 12,        /**< components of a card */
    DCM_VM_IFINDEX_MAX = 256,      /**< interface indexes of a VM */
    DCM_ETT_PATH_MAX = 3,          /**< parts of an entity's path */
    DCM_KEYWORD_SIZE = 16,         /**< bytes of a row of a keyword table */
    DCM_DESCRIPTION_SIZE = 16,     /**< bytes of a sensor's description */
    DCM_MODEL_NAME_SIZE = 64,      /**< bytes of a model name, and of a component's description */
    DCM_CARD_NAME_SIZE = 64,       /**< bytes of a card's name */
    DCM_CARD_ABBR_NAME_SIZE = 32,  /**< bytes of a card's abbreviated name */
    DCM_INNER_IF_NAME_SIZE = 17,   /**< bytes of an inner port's name, its terminator included */
    DCM_METH_IF_NAME_SIZE = 16,    /**< bytes of a management port's name */
    DCM_PORT_LED_PREFIX_SIZE = 32, /**< bytes of a port LED's name prefix */
    DCM_FRAME_TAIL_SIZE = 64       /**< bytes at the end of a frame record that stay zero */
};
/** @} */

/** @name Marks for "not given"; reports print them as "UNSPEC" */
/** @{ */
enum {
    DCM_ID_UNSPEC = 255,      /**< a slot, card or system id that is not given; in an LED's attachment: its holder's */
    DCM_PORT_UNSPEC = 65535   /**< a port id that is not given */
};
/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/* Records                                                                                                            */
/* ------------------------------------------------------------------------------------------------------------------ */

/** Identity of a hardware entity; also the physical descriptor that `hwalEttPhy2Logical` is given. */
typedef struct DcmEttInfo {
    uint32_t ettClass;                /**< the platform's class number, see dcmEttClassStr2Val() */
    uint32_t ettIndex;                /**< the entity's own index */
    uint32_t attach;                  /**< attachment: row of #gDcmEttAttachStrs */
    uint32_t pathDepth;               /**< number of path parts plus one */
    uint32_t sysIndex;                /**< system index; 255 is this system */
    uint32_t path[DCM_ETT_PATH_MAX];  /**< slot-like path parts; 255 is that of its holder ("#") */
} DcmEttInfo;

/** How an LED shows one state. */
typedef struct DcmLedStateInfo {
    uint8_t state; /**< row of the state table of the LED's type; 0 is "default" */
    uint8_t color; /**< row of #gDcmLedColorStrs */
    uint8_t freq;  /**< row of #gDcmLedFreqStrs */
    uint8_t pri;   /**< priority, 1 to 12; 0: entry not in use */
} DcmLedStateInfo;

/** The identity of an LED and the source states that it shows. */
typedef struct DcmLedHead {
    uint8_t ledType;    /**< row of #gDcmLedTypeStrs; selects the LED's state table */
    uint8_t id;         /**< LED number, from 1 */
    uint8_t attach;     /**< attachment: row of #gDcmEttAttachStrs */
    uint8_t attachSlot; /**< slot of the attachment; 255: that of its holder */
    uint8_t attachCard; /**< card of the attachment; 255: that of its holder; always 0 outside an LED map */
    uint8_t srcType;    /**< LED type whose state table the source states use */
    uint8_t statMapNum; /**< pairs in use in `srcState` and `ledState`, 0 to 12 */
    uint8_t srcState[DCM_LED_STATE_MAX]; /**< source states */
    uint8_t ledState[DCM_LED_STATE_MAX]; /**< what the LED shows for the source state of the same pair */
} DcmLedHead;

/** One LED. Begins with the fields of #DcmLedHead, so that a pointer to it may be passed as one. */
typedef struct DcmLedInfo {
    uint8_t ledType;    /**< see DcmLedHead::ledType */
    uint8_t id;         /**< see DcmLedHead::id */
    uint8_t attach;     /**< see DcmLedHead::attach */
    uint8_t attachSlot; /**< see DcmLedHead::attachSlot */
    uint8_t attachCard; /**< see DcmLedHead::attachCard */
    uint8_t srcType;    /**< see DcmLedHead::srcType */
    uint8_t statMapNum; /**< see DcmLedHead::statMapNum */
    uint8_t srcState[DCM_LED_STATE_MAX];       /**< see DcmLedHead::srcState */
    uint8_t ledState[DCM_LED_STATE_MAX];       /**< see DcmLedHead::ledState */
    DcmLedStateInfo states[DCM_LED_STATE_MAX]; /**< displays; entry i has priority i + 1 */
} DcmLedInfo;

/** A run of identical port LEDs. An array of them ends at the first entry whose `endId` is 0. */
typedef struct DcmPortLedInfo {
    uint8_t ledType; /**< row of #gDcmLedTypeStrs */
    uint8_t startId; /**< first LED number of the run */
    uint8_t endId;   /**< last LED number of the run; 0: entry not in use */
    char namePrefix[DCM_PORT_LED_PREFIX_SIZE]; /**< terminated only when shorter than the field */
    DcmLedStateInfo states[DCM_LED_STATE_MAX]; /**< as in #DcmLedInfo */
} DcmPortLedInfo;

/** Which LED shows the state of which entity. */
typedef struct DcmLedMapInfo {
    uint32_t num;                             /**< entries in use, 0 to 12 */
    uint32_t srcEttIndex[DCM_LED_MAP_MAX];    /**< logical entity index of each entry's source; 0: none named */
    DcmLedHead mapEntries[DCM_LED_MAP_MAX];   /**< the LED of each entry */
} DcmLedMapInfo;

/** One temperature sensor of a card, fan module or power supply. */
typedef struct DcmTemperatureInfo {
    uint8_t id;                        /**< sensor id as written in the description; not checked */
    uint8_t overflowAction;            /**< action code on overflow */
    uint8_t overflowMaxNum;            /**< overflow count limit */
    uint8_t actionCapability[1];       /**< bit array: actions 1 to 8 that the sensor supports */
    uint16_t highThreshold;            /**< alarm high threshold; two's complement */
    uint16_t lowThreshold;             /**< alarm low threshold; two's complement */
    uint16_t actionHighThreshold;      /**< action high threshold; two's complement */
    uint16_t actionHighThresholdMax;   /**< upper limit of `actionHighThreshold` */
    uint16_t actionHighThresholdMin;   /**< lower limit of `actionHighThreshold` */
    uint16_t actionLowThreshold;       /**< action low threshold; two's complement */
    uint16_t actionLowThresholdMax;    /**< upper limit of `actionLowThreshold` */
    uint16_t actionLowThresholdMin;    /**< lower limit of `actionLowThreshold` */
    uint16_t workThreshold;            /**< working threshold */
    uint16_t workReserved;             /**< reserved working value */
    char description[DCM_DESCRIPTION_SIZE]; /**< not terminated when exactly 16 bytes; longer texts are cut to 15 */
    uint8_t fanCtrlBits[2];            /**< bit array: fan controllers 1 to 16 that act on the sensor */
    uint8_t fanCtrlBitsInvalid;        /**< 1 when the list of fan controllers could not be read */
    uint8_t type;                      /**< row of #gDcmTemperTypeStrs */
} DcmTemperatureInfo;

/** One fan controller. Codes and levels are defined by the fan control and are not checked. */
typedef struct DcmFanCtrlInfo {
    uint8_t id;            /**< position in its array plus one; 0: entry not in use */
    uint8_t fanNum;        /**< number of fans driven */
    uint8_t workMode;      /**< work mode code */
    uint8_t speedLevel;    /**< speed level */
    uint8_t speedLevelMax; /**< highest speed level */
    uint8_t speedLevelMin; /**< lowest speed level */
    uint16_t speed;        /**< speed */
    uint16_t speedHighThreshold;    /**< high speed threshold */
    uint16_t speedLowThreshold;     /**< low speed threshold */
    uint16_t speedHighThresholdMax; /**< upper limit of `speedHighThreshold` */
    uint16_t speedHighThresholdMin; /**< lower limit of `speedHighThreshold` */
    uint16_t speedLowThresholdMax;  /**< upper limit of `speedLowThreshold` */
    uint16_t speedLowThresholdMin;  /**< lower limit of `speedLowThreshold` */
    uint8_t speedLevelForce;        /**< forced speed level; always 0 in a slot record */
} DcmFanCtrlInfo;

/** What a fan controller of a frame cools. Bytes only: the record has no padding. */
typedef struct DcmFanCtrlMapInfo {
    uint8_t id;               /**< position in its array plus one; 0: entry not in use */
    uint8_t fanModuleBits[2]; /**< bit array: fan modules 1 to 3 */
    uint8_t spare;            /**< never filled */
    uint8_t cardBits[4];      /**< bit array: the frame's slots 1 to 32 */
    uint8_t powerBits[2];     /**< bit array: power supplies 1 and 2 */
} DcmFanCtrlMapInfo;

/** One power supply. In a slot record only `id` is filled. */
typedef struct DcmPowerInfo {
    uint8_t id;             /**< position in its array plus one; 0: entry not in use */
    uint8_t ledNum;         /**< LEDs in `ledInfo`, 0 to 16 */
    uint8_t temperatureNum; /**< sensors in `temperature`, 0 to 2 */
    uint8_t modelNameLen;   /**< bytes of `modelName`, 0 to 64 */
    DcmLedInfo ledInfo[DCM_LED_MAX];                          /**< the supply's LEDs */
    DcmLedMapInfo ledMap;                                     /**< the supply's LED map */
    DcmTemperatureInfo temperature[DCM_UNIT_TEMPERATURE_MAX]; /**< the supply's sensors */
    char modelName[DCM_MODEL_NAME_SIZE];                      /**< terminated only when shorter than the field */
} DcmPowerInfo;

/** One fan of a fan module. */
typedef struct DcmFanInfo {
    uint8_t id;        /**< position in its array plus one; 0: entry not in use */
    uint8_t fanCtrlId; /**< fan controller that drives the fan */
    uint8_t spare[2];  /**< never filled */
} DcmFanInfo;

/** One fan module of a frame. */
typedef struct DcmFanModuleInfo {
    uint8_t id;             /**< position in its array plus one; 0: entry not in use */
    uint8_t fanNum;         /**< number of fans as written in the description: may exceed the 4 entries of `fan` */
    uint8_t slot;           /**< the frame's slot that holds the module */
    uint8_t ledNum;         /**< LEDs in `ledInfo`, 0 to 16 */
    uint8_t temperatureNum; /**< sensors in `temperature`, 0 to 2 */
    DcmFanInfo fan[DCM_FAN_MAX];                              /**< entry i describes fan i + 1 */
    DcmLedInfo ledInfo[DCM_LED_MAX];                          /**< the module's LEDs */
    DcmTemperatureInfo temperature[DCM_UNIT_TEMPERATURE_MAX]; /**< the module's sensors */
    DcmLedMapInfo ledMap;                                     /**< the module's LED map */
} DcmFanModuleInfo;

/** Which slots of a frame hold which kind of unit: bit arrays of slots 1 to 32. */
typedef struct DcmSlotmapInfo {
    uint8_t mpu[4];   /**< main processing units */
    uint8_t lpu[4];   /**< line cards */
    uint8_t sfu[4];   /**< switch fabrics */
    uint8_t fan[4];   /**< fan modules */
    uint8_t lcd[4];   /**< displays */
    uint8_t power[4]; /**< power supplies */
} DcmSlotmapInfo;

/** A frame type, see dcmFrameInfoGet(). */
typedef struct DcmFrameInfo {
    uint16_t type;        /**< the type id asked for, its low 16 bits */
    uint8_t maxSlotId;    /**< highest slot number; not checked */
    uint8_t spare;        /**< never filled */
    uint8_t powerNum;     /**< announced power supplies, 0 to 2 */
    uint8_t fanCtrlNum;   /**< announced fan controllers, 0 to 4 */
    uint8_t fanModuleNum; /**< announced fan modules, 0 to 3 */
    uint8_t ledNum;       /**< LEDs in `ledInfo`, 0 to 16 */
    DcmSlotmapInfo slotmap;                  /**< which slots hold which kind of unit */
    uint8_t crossSlotBit[DCM_SLOT_MAX][4];   /**< per slot: bit array of its cross slots 1 to 32 */
    uint32_t cardTypeCaps[DCM_CARD_TYPE_CAP_MAX]; /**< card type capability words, in document order */
    uint32_t supportCardType[DCM_SLOT_MAX][DCM_SLOT_CARD_TYPE_MAX]; /**< per slot: card types, up to the first 0 */
    uint8_t maxCardNum[DCM_SLOT_MAX];        /**< per slot: most cards it holds */
    uint8_t startCardId[DCM_SLOT_MAX];       /**< per slot: id of its first card */
    uint8_t supportCrossSlot[4];             /**< bit array: slots 1 to 32 that take cross-slot cards */
    DcmFanCtrlInfo fanCtrlInfo[DCM_FAN_CTRL_MAX];         /**< entry i describes fan controller i + 1 */
    DcmFanModuleInfo fanModuleInfo[DCM_FAN_MODULE_MAX];   /**< entry i describes fan module i + 1 */
    DcmPowerInfo powerInfo[DCM_POWER_MAX];                /**< entry i describes power supply i + 1 */
    DcmLedInfo ledInfo[DCM_LED_MAX];                      /**< the frame's own LEDs */
    DcmLedMapInfo ledMap;                                 /**< the frame's LED map */
    DcmFanCtrlMapInfo fanCtrlMap[DCM_FAN_CTRL_MAX];       /**< entry i: what fan controller i + 1 cools */
    uint8_t tail[DCM_FRAME_TAIL_SIZE];                    /**< never filled */
} DcmFrameInfo;

/** An inner or switch-fabric port of a slot. Exists when `portId` is below 65535, described when `drvType` is not 0. */
typedef struct DcmInnerIfInfo {
    uint8_t sysId;     /**< system id; 255: not given; 0 in an entry that is not described at all */
    uint8_t slotId;    /**< slot id; 255: not given */
    uint8_t cardId;    /**< card id; 255: not given */
    uint16_t portId;   /**< port id; 65535: the entry is absent */
    uint16_t phyType;  /**< PHY type, see dcmPhyTypeStr2Val() */
    uint8_t ondType;   /**< interface kind, see dcmOndTypeVal2Str() */
    uint8_t workmode;  /**< work mode, see dcmWorkmodeStr2Val() */
    uint8_t drvType;   /**< driver type, see dcmDriverTypeStr2Val(); not 0: the entry is described */
    uint8_t portType;  /**< interface type, see dcmInnerIfTypeStr2Val() */
    uint8_t rsv;       /**< never filled */
    char ifName[DCM_INNER_IF_NAME_SIZE]; /**< interface name, always terminated; empty for switch-fabric ports */
} DcmInnerIfInfo;

/** A slot type, see dcmSlotInfoGet(). */
typedef struct DcmSlotInfo {
    uint16_t type;         /**< the type id asked for, its low 16 bits */
    uint16_t maxCardNum;   /**< most cards that the slot takes */
    uint16_t startCardId;  /**< id of the first card; never filled */
    uint16_t fanCtrlNum;   /**< announced fan controllers, 0 to 4 */
    uint16_t powerNum;     /**< announced power entities, 0 to 2 */
    uint8_t supportPoe;    /**< 1 when the slot supplies PoE, else 0 */
    DcmInnerIfInfo broadcastSyncIf;                /**< the inner port to all slots */
    DcmInnerIfInfo syncIf[DCM_INNER_IF_MAX];       /**< entry i: the inner port to slot i + 1 */
    DcmInnerIfInfo sfuIf[DCM_INNER_IF_MAX];        /**< entry i: switch-fabric port i + 1 */
    DcmFanCtrlInfo fanCtrlInfo[DCM_FAN_CTRL_MAX];  /**< entry i: fan controller i + 1 */
    DcmPowerInfo powerInfo[DCM_POWER_MAX];         /**< entry i: power entity i + 1 */
} DcmSlotInfo;

/** 1 where the compiler lays out bit-fields from the most significant bit. */
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
#define DCM_BIG_ENDIAN_BIT_FIELDS 1
#else
#define DCM_BIG_ENDIAN_BIT_FIELDS 0
#endif

/** A management port of a card. Present in reports when `portId` is below 65535; described when `drvType` is not 0. */
typedef struct DcmMethIfInfo {
    uint8_t slotId;   /**< slot id; 255: not given */
    uint8_t cardId;   /**< card id; 255: not given */
    uint16_t portId;  /**< port id; 65535: not given */
    uint16_t phyType; /**< PHY type, see dcmPhyTypeStr2Val() */
    uint8_t ondType;  /**< interface kind: 44 ("meth") once a PHY type has been read */
    uint8_t workmode; /**< work mode, see dcmWorkmodeStr2Val() */
    uint8_t drvType;  /**< driver type, see dcmDriverTypeStr2Val(); not 0: the entry is described */
    /* One byte of flags, counted from its most significant bit in either byte order. */
#if DCM_BIG_ENDIAN_BIT_FIELDS
    uint8_t supportLaser : 2;    /**< 1 when the laser can be controlled */
    uint8_t supportMediaChg : 2; /**< 1 when the medium can change; the default of a described port */
    uint8_t spareBits : 4;       /**< never filled */
#else
    uint8_t spareBits : 4;       /**< never filled */
    uint8_t supportMediaChg : 2; /**< 1 when the medium can change; the default of a described port */
    uint8_t supportLaser : 2;    /**< 1 when the laser can be controlled */
#endif
    char ifName[DCM_METH_IF_NAME_SIZE]; /**< interface name; terminated only when shorter than the field */
    uint8_t transceiverCaps[4];         /**< capability set: value v in bit v - 1, see dcmPortTransceiverCapStr2Val() */
} DcmMethIfInfo;

/** A panel port of a card. Described when `drvType` is not 0. */
typedef struct DcmPanelIfInfo {
    uint8_t slotId;            /**< slot id; 255: not given */
    uint8_t cardId;            /**< card id; 255: not given */
    uint16_t portId;           /**< port id; 65535: not given */
    uint16_t phyType;          /**< PHY type, see dcmPhyTypeStr2Val() */
    uint8_t ondType;           /**< interface kind, see dcmOndTypeVal2Str() */
    uint8_t workmode;          /**< work mode, see dcmWorkmodeStr2Val() */
    uint8_t portType;          /**< port type, see dcmPortTypeStr2Val(); 2 ("unassigned") by default */
    uint8_t drvType;           /**< driver type, see dcmDriverTypeStr2Val(); not 0: the entry is described */
    uint8_t hidden;            /**< 1 when the port is hidden */
    uint8_t connectorType;     /**< connector, see dcmPortConnectorStr2Val() */
    uint32_t groupId;          /**< port group number */
    uint8_t layerProtoCaps[4]; /**< capability set: value v in bit v, see dcmPortLayerProtoCapStr2Val() */
    uint8_t opticalChnCaps[4]; /**< capability set: value v in bit v, see dcmPortOpticalChnCapStr2Val() */
    uint16_t wavelength;       /**< wavelength number */
    uint8_t bpPort;            /**< 1 for a backplane port */
    uint8_t gccBitOrder;       /**< bit order, see dcmBitOrderStr2Val() */
    /* One 16-bit word of flags, counted from its most significant bit in either byte order. */
#if DCM_BIG_ENDIAN_BIT_FIELDS
    uint16_t supportLaser : 2;    /**< 1 when the laser can be controlled */
    uint16_t supportPoe : 2;      /**< 1 when the port supplies PoE */
    uint16_t supportMediaChg : 2; /**< 1 when the medium can change; the default of a described port */
    uint16_t spareBits : 2;       /**< never filled */
    uint16_t supportPhyChg : 4;   /**< 1 when the PHY type can change */
    uint16_t supportSplit : 4;    /**< 1 when the port can be split */
#else
    uint16_t supportSplit : 4;    /**< 1 when the port can be split */
    uint16_t supportPhyChg : 4;   /**< 1 when the PHY type can change */
    uint16_t spareBits : 2;       /**< never filled */
    uint16_t supportMediaChg : 2; /**< 1 when the medium can change; the default of a described port */
    uint16_t supportPoe : 2;      /**< 1 when the port supplies PoE */
    uint16_t supportLaser : 2;    /**< 1 when the laser can be controlled */
#endif
    uint8_t poeStandardCaps[1]; /**< capability set: value v in bit v, see dcmPortPoeStandardCapStr2Val() */
    uint8_t poeInrushCaps[1];   /**< capability set: value v in bit v, see dcmPortPoeInrushCapStr2Val(); "at-altb" (8)
                                     has no bit here and sets the top bit of `portIdOffset` */
    int8_t portIdOffset;        /**< what a group adds to its port ids */
    uint8_t transceiverCaps[4]; /**< capability set: value v in bit v - 1, see dcmPortTransceiverCapStr2Val() */
    uint8_t modelNameLen;       /**< bytes of `modelName`, 0 to 64 */
    char modelName[DCM_MODEL_NAME_SIZE]; /**< terminated only when shorter than the field */
} DcmPanelIfInfo;

/** A GCC port of a card. Described when `phyType` is not 0. */
typedef struct DcmGccIfInfo {
    uint8_t slotId;   /**< slot id; 255: not given */
    uint8_t cardId;   /**< card id; 255: not given */
    uint16_t portId;  /**< port id; 65535: not given */
    uint16_t phyType; /**< PHY type, see dcmPhyTypeStr2Val() */
    uint8_t ondType;  /**< interface kind, see dcmOndTypeVal2Str() */
} DcmGccIfInfo;

/** An ethppp port of a card. */
typedef struct DcmEthpppIfInfo {
    uint16_t portId; /**< port id; 0 when not given */
} DcmEthpppIfInfo;

/** A CPU of a card. */
typedef struct DcmCpuInfo {
    uint8_t id;            /**< position in its array plus one; 0: entry not in use */
    uint8_t coreNum;       /**< number of cores */
    uint8_t highThreshold; /**< upper usage threshold */
    uint8_t lowThreshold;  /**< lower usage threshold */
    uint32_t freq;         /**< clock frequency */
    uint8_t modelNameLen;  /**< bytes of `modelName`, 0 to 64 */
    char modelName[DCM_MODEL_NAME_SIZE]; /**< terminated only when shorter than the field */
} DcmCpuInfo;

/** A memory of a card. */
typedef struct DcmMemoryInfo {
    uint8_t id;            /**< position in its array plus one; 0: entry not in use */
    uint8_t type;          /**< memory type, see dcmMemoryTypeStr2Val() */
    uint8_t highThreshold; /**< upper usage threshold */
    uint8_t lowThreshold;  /**< lower usage threshold */
    uint8_t modelNameLen;  /**< bytes of `modelName`, 0 to 64 */
    char modelName[DCM_MODEL_NAME_SIZE]; /**< terminated only when shorter than the field */
} DcmMemoryInfo;

/** A voltage sensor of a card. */
typedef struct DcmVoltageInfo {
    uint16_t id;            /**< position in its array plus one; 0: entry not in use */
    uint16_t highThreshold; /**< upper voltage threshold */
    uint16_t lowThreshold;  /**< lower voltage threshold */
    uint16_t modelNameLen;  /**< length of the model name in the description: may exceed the field */
    char description[DCM_DESCRIPTION_SIZE]; /**< terminated only when shorter than the field */
    char modelName[DCM_MODEL_NAME_SIZE];    /**< terminated only when shorter than the field */
} DcmVoltageInfo;

/** A switch chip or clock chip of a card. */
typedef struct DcmChipInfo {
    uint16_t modelNameLen; /**< bytes of `modelName`, 0 to 64 */
    char modelName[DCM_MODEL_NAME_SIZE]; /**< terminated only when shorter than the field */
} DcmChipInfo;

/** A further component of a card. */
typedef struct DcmComponentInfo {
    uint8_t entityClass;    /**< the platform's class number, see dcmEttClassStr2Val(); 0: unknown */
    uint8_t subType;        /**< subtype code */
    uint8_t num;            /**< number of such components */
    uint8_t descriptionLen; /**< length of the description text, its low 8 bits: may exceed the field */
    char description[DCM_MODEL_NAME_SIZE]; /**< terminated only when shorter than the field */
} DcmComponentInfo;

/** A card type in one of its modes, see dcmCardInfoGet(). */
typedef struct DcmCardInfo {
    uint16_t type;               /**< the type id asked for, its low 16 bits */
    uint16_t mode;               /**< the mode asked for, its low 16 bits */
    uint16_t panneIfStartPortId; /**< first port id of the panel */
    uint16_t panelIfMaxPortId;   /**< highest port id of the panel */
    uint8_t isTmuxCtrl;          /**< 1 when the card controls a terminal multiplexer */
    uint8_t isMuxCtrl;           /**< 1 when the card controls a multiplexer */
    uint8_t methIfNum;           /**< announced management ports, 0 to 4 */
    uint8_t pannelIfNum;         /**< announced panel ports, 0 to 64 */
    uint8_t hideIfNum;           /**< announced hidden panel ports */
    uint8_t pannelLineIfNum;     /**< announced line ports among the panel ports */
    uint8_t panneClientIfNum;    /**< announced client ports among the panel ports */
    uint8_t gccIfNum;            /**< announced GCC ports, 0 to 2 */
    uint8_t ethpppIfNum;         /**< announced ethppp ports, 0 to 4 */
    uint8_t cpuNum;              /**< announced CPUs, 0 or 1 */
    uint8_t memoryNum;           /**< announced memories, 0 to 2 */
    uint8_t temperatureNum;      /**< sensors in `temperature`, 0 to 6 */
    uint8_t voltageNum;          /**< announced voltage sensors, 0 to 10 */
    uint8_t occupySlotNum;       /**< slots that the card occupies */
    uint8_t ledNum;              /**< LEDs in `led`, 0 to 16 */
    uint8_t switchChipNum;       /**< announced switch chips, 0 or 1 */
    uint8_t clockChipNum;        /**< announced clock chips, 0 or 1 */
    uint8_t componentNum;        /**< announced components, 0 to 12 */
    uint8_t crosslinkSlot;       /**< the card's cross-link slot */
    char name[DCM_CARD_NAME_SIZE];          /**< `nameLen` bytes; the rest is not defined */
    char abbrName[DCM_CARD_ABBR_NAME_SIZE]; /**< `abbrNameLen` bytes; the rest is not defined */
    uint8_t nameLen;             /**< 0 to 63 */
    uint8_t abbrNameLen;         /**< 0 to 31 */
    DcmMethIfInfo methIf[DCM_METH_IF_MAX];       /**< entry i: management port i + 1 */
    DcmPanelIfInfo panelIf[DCM_PANEL_IF_MAX];    /**< entry i: panel port i + 1 */
    DcmGccIfInfo gccIf[DCM_GCC_IF_MAX];          /**< entry i: GCC port i + 1 */
    DcmEthpppIfInfo ethpppIf[DCM_ETHPPP_IF_MAX]; /**< entry i: ethppp port i + 1 */
    DcmCpuInfo cpu[DCM_CPU_MAX];                 /**< entry i: CPU i + 1 */
    DcmMemoryInfo memory[DCM_MEMORY_MAX];        /**< entry i: memory i + 1 */
    DcmTemperatureInfo temperature[DCM_CARD_TEMPERATURE_MAX]; /**< sensors, in document order */
    DcmVoltageInfo voltage[DCM_VOLTAGE_MAX];     /**< entry i: voltage sensor i + 1 */
    DcmLedInfo led[DCM_LED_MAX];                 /**< the card's LEDs */
    DcmPortLedInfo portLed[DCM_PORT_LED_MAX];    /**< the card's port LED runs */
    DcmLedMapInfo ledMap;                        /**< the card's LED map */
    uint8_t portTypeCaps[1];                     /**< capability set: value v in bit v, dcmPortTypeCapStr2Val() */
    uint8_t supportFuncs[1];                     /**< capability set: value v in bit v, dcmCardSupportFuncStr2Val() */
    DcmChipInfo switchChip;                      /**< the switch chip */
    DcmChipInfo clockChip;                       /**< the clock chip */
    DcmComponentInfo component[DCM_COMPONENT_MAX]; /**< components, in document order */
} DcmCardInfo;

/** The panel ports given to one virtual machine, see dcmVmPortInfoGet(). */
typedef struct DcmVmPortInfo {
    uint8_t ifindexNum;                   /**< announced ports; not compared with the entries that were read */
    uint32_t ifindex[DCM_VM_IFINDEX_MAX]; /**< interface indexes, in document order */
} DcmVmPortInfo;

/* ------------------------------------------------------------------------------------------------------------------ */
/* Queries                                                                                                            */
/* ------------------------------------------------------------------------------------------------------------------ */

/**
 * @name Queries
 * `fileName` is the path of the description; NULL is "/etc/zorconf/device/device.xml". It must be a regular file of at
 * most 128 MiB and is read as it is: a compressed file is not well-formed. URLs, escapes ("%20") and "-" are plain
 * paths, no catalog is consulted for a missing file, and nothing that a description refers to is opened.
 *
 * A query returns 0 when it has found and decoded the element. It returns -1 when
 * - the file cannot be opened or read, is not a regular file, or is larger than 128 MiB,
 * - the file is not well-formed XML,
 * - the root element has another name ("device"; "panel-port" for a VM),
 * - no element has the requested type (and mode),
 * - a required attribute is missing, a count or an id is out of range, an id is described twice, a word is unknown or a
 *   list is faulty, except where the reference of the format says that this is ignored,
 * - an allocation fails, or entities expand beyond 1 MiB in one text or 16 MiB in the description.
 */
/** @{ */

/**
 * Reads the first frame whose type id is `typeId`. A frame without a type id has type 0.
 *
 * Returns -1 in the cases above, and when a list in "slotmap" is faulty, when "fanmodule-entity", "fanctrl-entity" or
 * "power-entity" has no "num" or one above its bound, or when a fan module, fan, controller, supply, LED, LED map or
 * sensor in it fails. The record then has its `type`, the elements before the fault in document order, and what the
 * failing element had set, such as the rejected count. All other fields are 0. When the file is at fault or the frame
 * is not found, only `type` is set.
 */
DCM_API int dcmFrameInfoGet(const char *fileName, uint32_t typeId, DcmFrameInfo *info) DCM_NONNULL(3);

/**
 * Reads the first slot whose list of type ids contains `typeId`. A slot without a list is never found.
 *
 * Returns -1 in the cases above, and when "supportpoe" is not "yes" or "no", when an inner port, switch-fabric port,
 * fan controller or power entity fails, or when "fanctrl-entity" or "power-entity" has no "num" or one above its bound.
 * The record then has its `type`, the elements before the fault in document order, and what the failing element had
 * set. All other ports are absent (`portId` 65535; slot, card and system id 255) and other fields are 0. When the file
 * is at fault or the slot is not found, only `type` is set.
 */
DCM_API int dcmSlotInfoGet(const char *fileName, uint32_t typeId, DcmSlotInfo *info) DCM_NONNULL(3);

/**
 * Reads the first card whose type id is `typeId` and whose mode is `mode`. A missing attribute counts as 0.
 *
 * Returns -1 in the cases above, and when "panel-port" has no "num", "startportid" or "maxportid", or a "linenum" or
 * "clientnum" that is not 0 although both do not add up to "num"; when another counted element has no "num" or one
 * above its bound; or when a port, chip, memory, sensor, LED, LED map or component in it fails. The record then has its
 * `type` and `mode`, the elements before the fault in document order, and what the failing element had set, such as the
 * rejected count. Other ports have no ids (`portId` 65535; slot and card id 255), panel ports are "unassigned" (2), and
 * other fields are 0. When the file is at fault, only `type` and `mode` are set. When the card is not found, `name` and
 * `abbrName` are those of the last card that had any.
 */
DCM_API int dcmCardInfoGet(const char *fileName, uint32_t typeId, uint32_t mode, DcmCardInfo *info) DCM_NONNULL(4);

/**
 * Reads the port list of VM `vmId` from "/etc/zorconf/device/vm-N.xml". The record is not cleared: entries after the
 * last one of the file keep their values.
 *
 * Returns -1 when the file does not exist, and in the cases above for the file, its root element "panel-port" and
 * allocations. The record then keeps all its values, unless an allocation failed between two entries: then the entries
 * before it are already written.
 */
DCM_API int dcmVmPortInfoGet(uint8_t vmId, DcmVmPortInfo *info) DCM_NONNULL(2);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/* Reports                                                                                                            */
/* ------------------------------------------------------------------------------------------------------------------ */

/**
 * @name Reports
 * A report is printed on standard output for a person at a debug shell; each line ends in "\r\n". A Show function runs
 * the query into a record on its own stack and prints it, or a line that the query failed. A NULL `fileName` is the
 * default file. A result that is described as that of the last write is the one of printf or puts.
 */
/** @{ */

/** Prints a frame type of the default file. Returns as dcmFrameInfoShowFilename(). */
DCM_API int dcmFrameInfoShow(uint32_t typeId);
/** Prints a frame type of `fileName`. Returns -1 when the query failed, otherwise 0 or more. */
DCM_API int dcmFrameInfoShowFilename(const char *fileName, uint32_t typeId);
/** Prints a frame record. Returns the result of the last write. */
DCM_API int dcmFrameInfoPrint(const DcmFrameInfo *info) DCM_NONNULL(1);

/** Prints a slot type of the default file. Returns the result of the last write, also when the query failed. */
DCM_API int dcmSlotInfoShow(uint32_t typeId);
/** Prints a slot type of `fileName`. Returns as dcmSlotInfoShow(). */
DCM_API int dcmSlotInfoShowFilename(const char *fileName, uint32_t typeId);
/** Prints a slot record. Returns the result of the last write. */
DCM_API int dcmSlotInfoPrint(const DcmSlotInfo *info) DCM_NONNULL(1);

/** Prints a card type of the default file. Returns the result of the last write, also when the query failed. */
DCM_API int dcmCardInfoShow(uint32_t typeId, uint32_t mode);
/** Prints a card type of `fileName`. Returns as dcmCardInfoShow(). */
DCM_API int dcmCardInfoShowFilename(const char *fileName, uint32_t typeId, uint32_t mode);
/** Prints a card record. Returns the result of the last write. */
DCM_API int dcmCardInfoPrint(const DcmCardInfo *info) DCM_NONNULL(1);

/** Prints the port list of a VM. `fileName` is only printed, NULL as "(null)". Returns the result of the last write. */
DCM_API int dcmVmPortInfoShow(const char *fileName, const DcmVmPortInfo *info) DCM_NONNULL(2);

/** Prints type, id, attachment and state map of an LED. Also takes a #DcmLedInfo, which begins with the same fields. */
DCM_API void _dcmLedInfoPrint(const DcmLedHead *led) DCM_NONNULL(1);
/** Prints those of the 12 `states` that are in use, in the words of `ledType`. */
DCM_API void _dcmLedStatesPrint(const DcmLedStateInfo *states, uint32_t ledType) DCM_NONNULL(1);
/** Prints `num` LEDs. `leds` may be NULL when `num` is 0. */
DCM_API void dcmLedInfoPrint(const DcmLedInfo *leds, int32_t num);
/** Prints an LED map. */
DCM_API void dcmLedMapPrint(const DcmLedMapInfo *map) DCM_NONNULL(1);
/** Prints the LEDs and port LED runs of a card. */
DCM_API void dcmLedCardInfoPrint(const DcmCardInfo *info) DCM_NONNULL(1);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/* Shared decoders                                                                                                    */
/* ------------------------------------------------------------------------------------------------------------------ */

/**
 * @name Shared decoders
 * Each decodes one element of a tree that the caller has parsed with libxml2 into memory of the caller. After -1 the
 * memory has what was decoded before the fault.
 */
/** @{ */

/**
 * Appends one "temperature" element to `sensors` at position `*count` and increments `*count`, also when the content of
 * the element is at fault. The caller makes sure that the array has room.
 */
DCM_API int dcmDecodeTemperatureEntity(struct _xmlNode *node, DcmTemperatureInfo *sensors, uint8_t *count)
    DCM_NONNULL(1, 2, 3);

/**
 * Decodes a "led-entity" element into `leds`, which has room for `maxLeds`; each LED gets `attach` and `attachSlot`.
 * `*count` receives the number of LEDs and is unchanged after a failure. LEDs beyond the room are left out. With NULL
 * for `leds` they are only counted.
 */
DCM_API int dcmLedDecodeEntity(struct _xmlNode *node, DcmLedInfo *leds, int32_t maxLeds, int32_t attach,
                               int32_t attachSlot, uint8_t *count) DCM_NONNULL(1, 6);

/**
 * Decodes the "state" children of an element into the state pairs of `led`, whose `ledType` and `srcType` are set.
 * Pairs beyond the twelfth are left out.
 */
DCM_API int _dcmLedDecodeStateMap(struct _xmlNode *node, DcmLedHead *led) DCM_NONNULL(1, 2);

/** Decodes a "portled-entity" element into the 3 cleared entries of `portLeds`; further runs are left out. */
DCM_API int dcmLedDecodePortEntity(struct _xmlNode *node, DcmPortLedInfo *portLeds) DCM_NONNULL(1, 2);

/** Decodes a "led-map" element into a cleared map. */
DCM_API int dcmLedDecodeMap(struct _xmlNode *node, DcmLedMapInfo *map) DCM_NONNULL(1, 2);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/* List codecs                                                                                                        */
/* ------------------------------------------------------------------------------------------------------------------ */

/**
 * @name List codecs
 * They report nothing. A NULL `list` counts as empty.
 */
/** @{ */

/** Returns 1 when `value` is an item of a comma-separated list of numbers ("1,0x10"; no ranges), otherwise 0. */
DCM_API int dcmStrMatch(uint32_t value, const char *list);

/**
 * Reads numbers, each separated from the next by one character of any kind, into `array`, up to the first 0 or text
 * that is not a number. Clears `size` bytes of `array` first. Always returns 0. `array` must hold the longest list that
 * the text may contain: `size` does not limit what is stored.
 */
DCM_API int dcmStr2Array(const char *list, uint32_t *array, int32_t size);

/**
 * Reads a range list ("1-4,6": no blanks, no leading zeros) of numbers from `minimum` to `maximum` into a bit array of
 * `size` bytes. Returns -1 and leaves the array unchanged when it cannot hold `maximum`. Returns -1 for a faulty list,
 * whose numbers before the fault are set.
 */
DCM_API int dcmStr2BitList(const char *list, uint32_t minimum, uint32_t maximum, uint8_t *bits, uint32_t size)
    DCM_NONNULL(4);

/**
 * Writes a bit array of `size` bytes as a range list that counts from 1, and returns `out`. Stops before an item once
 * more than `limit` characters are written; `out` must hold `limit` characters, one more item ("," and two numbers
 * joined by "-") and the terminator, and never less than 4 bytes.
 */
DCM_API char *dcmBitList2Str(const uint8_t *bits, uint32_t size, char *out, uint32_t limit) DCM_NONNULL(3);

/** The same counting from 0: prints a capability set as its values (for transceivers, use dcmBitList2Str()). */
DCM_API char *dcmBitList2Str0(const uint8_t *bits, uint32_t size, char *out, uint32_t limit) DCM_NONNULL(3);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/* Converters                                                                                                         */
/* ------------------------------------------------------------------------------------------------------------------ */

/**
 * @name Keywords of ports and interfaces
 * Str2Val: compares exactly. For an unknown or NULL text nothing is written, the text is reported, and the result is
 * -1. Val2Str: a constant text, "unknown" for a value without a keyword.
 */
/** @{ */
/** "yes" 1, "no" 0. */
DCM_API int dcmYesNoStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** "lsb" 0, "msb" 1. */
DCM_API int dcmBitOrderStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmBitOrderStr2Val(). */
DCM_API const char *dcmBitOrderVal2Str(uint32_t value);
/** "cdl" 1, "ineth" 2. */
DCM_API int dcmDriverTypeStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmDriverTypeStr2Val(). */
DCM_API const char *dcmDriverTypeVal2Str(uint32_t value);
/** "hsync" 1 to "sfu" 4. */
DCM_API int dcmInnerIfTypeStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmInnerIfTypeStr2Val(). */
DCM_API const char *dcmInnerIfTypeVal2Str(uint32_t value);
/** "bridge" 0, "route" 1. */
DCM_API int dcmWorkmodeStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmWorkmodeStr2Val(). */
DCM_API const char *dcmWorkmodeVal2Str(uint32_t value);
/** "copper" 1, "fiber" 2. */
DCM_API int dcmPortConnectorStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmPortConnectorStr2Val(). */
DCM_API const char *dcmPortConnectorTypeVal2Str(uint32_t value);
/** PHY type and its interface kind; writes both or neither. */
DCM_API int dcmPhyTypeStr2Val(const unsigned char *text, uint32_t *phyType, uint32_t *ondType) DCM_NONNULL(2, 3);
/** Name of a PHY type. Not the reverse of dcmPhyTypeStr2Val(): "10ge" reads as 3, and 3 prints "xge". */
DCM_API const char *dcmPhyTypeVal2Str(uint32_t value);
/** Name of an interface kind, 1 to 45. */
DCM_API const char *dcmOndTypeVal2Str(uint32_t value);
/** "client" 0 to "ptmes61" 33. */
DCM_API int dcmPortTypeStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmPortTypeStr2Val(), except that 2 ("unassigned") prints "unassign". */
DCM_API const char *dcmPortTypeVal2Str(uint32_t value);
/** "eth" 0 to "none" 6. */
DCM_API int dcmPortTypeCapStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmPortTypeCapStr2Val(). */
DCM_API const char *dcmPortTypeCapVal2Str(uint32_t value);
/** "ram" 1, "flash" 2. */
DCM_API int dcmMemoryTypeStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmMemoryTypeStr2Val(). */
DCM_API const char *dcmMemoryTypeVal2Str(uint32_t value);
/** @} */

/**
 * @name Keywords of capabilities
 * Results are as for the keywords of ports and interfaces. In a record, value v is in bit v of its set; transceivers
 * are in bit v - 1, since their values count from 1.
 */
/** @{ */
/** "switch-console" 0 to 2. */
DCM_API int dcmCardSupportFuncStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** "ge" 0 to "flexe100ge" 26. */
DCM_API int dcmPortLayerProtoCapStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmPortLayerProtoCapStr2Val(). */
DCM_API const char *dcmPortLayerProtoCapVal2Str(uint32_t value);
/** "1000basex" 1 to 21. */
DCM_API int dcmPortTransceiverCapStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmPortTransceiverCapStr2Val() for 1 to 17; 18 to 21 print "unknown". Bit v - 1 of a set has value v. */
DCM_API const char *dcmPortTransceiverCapVal2Str(uint32_t value);
/** 0 to 16. */
DCM_API int dcmPortOpticalChnCapStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmPortOpticalChnCapStr2Val(). */
DCM_API const char *dcmPortOpticalChnCapVal2Str(uint32_t value);
/** "af" 1, "at" 2, "bt" 3. */
DCM_API int dcmPortPoeStandardCapStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmPortPoeStandardCapStr2Val(). */
DCM_API const char *dcmPortPoeStandardCapVal2Str(uint32_t value);
/** "af" 0 to "at-altb" 8. */
DCM_API int dcmPortPoeInrushCapStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmPortPoeInrushCapStr2Val(). */
DCM_API const char *dcmPortPoeInrushCapVal2Str(uint32_t value);
/** @} */

/**
 * @name Keyword tables
 * The value of a keyword is its row, except for entity classes, see dcmEttClassStr2Val(). The converters read the
 * tables at each call, so that a process may replace words in them. The tables are adjacent in memory in this order,
 * followed by zero bytes. (A program that links the shared library and is not compiled as position-independent code
 * with -fPIC has copies of the tables that it names; the library uses the copies, which are not adjacent.)
 */
/** @{ */
enum {
    DCM_ETT_CLASS_ROWS = 13,       /**< rows of #gDcmEttClass */
    DCM_ETT_ATTACH_ROWS = 6,       /**< rows of #gDcmEttAttachStrs */
    DCM_LED_FREQ_ROWS = 5,         /**< rows of #gDcmLedFreqStrs */
    DCM_LED_COLOR_ROWS = 4,        /**< rows of #gDcmLedColorStrs */
    DCM_LED_TYPE_ROWS = 19,        /**< rows of #gDcmLedTypeStrs */
    DCM_LED_SYS_STATE_ROWS = 9,    /**< rows of #gDcmLedSysStateStrs */
    DCM_LED_POWER_STATE_ROWS = 4,  /**< rows of #gDcmLedPowerStateStrs */
    DCM_LED_FAN_STATE_ROWS = 4,    /**< rows of #gDcmLedFanStateStrs */
    DCM_LED_STACK_STATE_ROWS = 2,  /**< rows of #gDcmLedStackStateStrs */
    DCM_LED_MASTER_STATE_ROWS = 4, /**< rows of #gDcmLedMasterStateStrs */
    DCM_LED_POE_STATE_ROWS = 2,    /**< rows of #gDcmLedPoeStateStrs */
    DCM_LED_ALARM_STATE_ROWS = 5,  /**< rows of #gDcmLedAlarmStateStrs */
    DCM_LED_CARD_STATE_ROWS = 3,   /**< rows of #gDcmLedCardStateStrs */
    DCM_LED_USB_STATE_ROWS = 2,    /**< rows of #gDcmLedUsbStateStrs */
    DCM_TEMPER_TYPE_ROWS = 8       /**< rows of #gDcmTemperTypeStrs */
};
/** Entity classes. */
extern DCM_API char gDcmEttClass[DCM_ETT_CLASS_ROWS][DCM_KEYWORD_SIZE];
/** Attachments. */
extern DCM_API char gDcmEttAttachStrs[DCM_ETT_ATTACH_ROWS][DCM_KEYWORD_SIZE];
/** LED frequencies. */
extern DCM_API char gDcmLedFreqStrs[DCM_LED_FREQ_ROWS][DCM_KEYWORD_SIZE];
/** LED colours. */
extern DCM_API char gDcmLedColorStrs[DCM_LED_COLOR_ROWS][DCM_KEYWORD_SIZE];
/** LED types. */
extern DCM_API char gDcmLedTypeStrs[DCM_LED_TYPE_ROWS][DCM_KEYWORD_SIZE];
/** States: system. */
extern DCM_API char gDcmLedSysStateStrs[DCM_LED_SYS_STATE_ROWS][DCM_KEYWORD_SIZE];
/** States: power. */
extern DCM_API char gDcmLedPowerStateStrs[DCM_LED_POWER_STATE_ROWS][DCM_KEYWORD_SIZE];
/** States: fan. */
extern DCM_API char gDcmLedFanStateStrs[DCM_LED_FAN_STATE_ROWS][DCM_KEYWORD_SIZE];
/** States: stack, id, breakout. */
extern DCM_API char gDcmLedStackStateStrs[DCM_LED_STACK_STATE_ROWS][DCM_KEYWORD_SIZE];
/** States: (stack) master. */
extern DCM_API char gDcmLedMasterStateStrs[DCM_LED_MASTER_STATE_ROWS][DCM_KEYWORD_SIZE];
/** States: poe, link, ponlink. */
extern DCM_API char gDcmLedPoeStateStrs[DCM_LED_POE_STATE_ROWS][DCM_KEYWORD_SIZE];
/** States: alarm. */
extern DCM_API char gDcmLedAlarmStateStrs[DCM_LED_ALARM_STATE_ROWS][DCM_KEYWORD_SIZE];
/** States: mcu, lcu, sfu. */
extern DCM_API char gDcmLedCardStateStrs[DCM_LED_CARD_STATE_ROWS][DCM_KEYWORD_SIZE];
/** States: usb. */
extern DCM_API char gDcmLedUsbStateStrs[DCM_LED_USB_STATE_ROWS][DCM_KEYWORD_SIZE];
/** Temperature sensor types. */
extern DCM_API char gDcmTemperTypeStrs[DCM_TEMPER_TYPE_ROWS][DCM_KEYWORD_SIZE];
/** @} */

/**
 * @name Keywords of entities, LEDs and temperature sensors
 * Str2Val: results are as for the keywords of ports and interfaces. Val2Str: the row of the table. A value equal to the
 * number of rows returns the first row of the table that follows in memory, a larger one "unknown".
 */
/** @{ */
/** Writes the platform's class number, not the row: "led" 26, "fan" 19, "power" 6, "card" 9, "port" 10, ... */
DCM_API int dcmEttClassStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Row of #gDcmEttAttachStrs. */
DCM_API int dcmEttAttachStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmEttAttachStr2Val(). */
DCM_API const char *dcmEttAttachVal2Str(uint32_t value);
/** Row of #gDcmLedFreqStrs. */
DCM_API int dcmLedFreqStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmLedFreqStr2Val(). */
DCM_API const char *dcmLedFreqVal2Str(uint32_t value);
/** Row of #gDcmLedColorStrs. */
DCM_API int dcmLedColorStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmLedColorStr2Val(). */
DCM_API const char *dcmLedColorVal2Str(uint32_t value);
/** Row of #gDcmLedTypeStrs. */
DCM_API int dcmLedTypeStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmLedTypeStr2Val(). */
DCM_API const char *dcmLedTypeVal2Str(uint32_t value);
/** Row of #gDcmTemperTypeStrs. */
DCM_API int dcmTemperTypeStr2Val(const unsigned char *text, uint32_t *value) DCM_NONNULL(2);
/** Reverse of dcmTemperTypeStr2Val(). */
DCM_API const char *dcmTemperTypeVal2Str(uint32_t value);
/** Row of the state table of `ledType`; -1 without a report for an LED type that has no states. */
DCM_API int dcmLedStateStr2Val(uint32_t ledType, const unsigned char *text, uint32_t *value) DCM_NONNULL(3);
/** Reverse of dcmLedStateStr2Val(); "unknown" for an LED type that has no states. */
DCM_API const char *dcmLedStateVal2Str(uint32_t ledType, uint32_t value);
/**
 * Splits an entity name, CLASS-PATH-NAME\@ATTACH with up to three path parts joined by "/", into an identity. Always
 * returns 0; an unknown class or attachment is reported and counts as 0. A NULL `name` is an empty one.
 */
DCM_API int dcmNameToEttInfo(const char *name, DcmEttInfo *info) DCM_NONNULL(2);
/** @} */

#ifdef __cplusplus
}
#endif

#endif

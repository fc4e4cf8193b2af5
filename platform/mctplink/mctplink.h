/* SPDX-License-Identifier: Apache-2.0 */
/* MCTP client library: discovery of endpoints and exchange of messages.
 *
 * The library reaches the platform's MCTP service. Its callbacks run on threads of the library.
 * Records are plain memory whose offsets are part of the contract. */
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

struct MctpLinkCallbackInfo;
struct MctpLinkRequest;

typedef void (*MctpLinkCallback)(struct MctpLinkCallbackInfo* info);
typedef void (*MctpLinkCompletion)(struct MctpLinkRequest* request);

/* Values of MctpLinkCallbackInfo.callbackType. */
enum { MCTPLINK_DISCOVERY_STARTED = 3, MCTPLINK_TABLE_DELIVERED = 4 };

/* One request and its response. Zeroed by the caller, who keeps it until the completion function
 * has run or MctpLinkClearRequest has returned. The compiler lays the fields out: the offsets
 * in the names and asserted below are those with 64-bit pointers, and with 32-bit ones every field
 * after the first pointer comes earlier by the bytes saved. */
struct MctpLinkRequest {
    uint32_t command;     /* caller: PLDM command code */
    uint8_t eid;          /* caller: destination endpoint id */
    uint8_t messageType;  /* caller: MCTP message type, 1 for PLDM */
    uint8_t requestFlagA; /* caller */
    uint8_t unused7;
    const uint8_t* requestBytes; /* caller */
    uint8_t* responseBytes;      /* caller: buffer for the response */
    uint8_t unused24[2];
    uint8_t requestFlagB; /* caller */
    uint8_t unused27[13];
    uint32_t requestLength;        /* caller: bytes */
    uint32_t responseLength;       /* in: capacity, out: length of the response, in bytes */
    MctpLinkCompletion completion; /* caller */
    uint32_t responseStatus;       /* library */
    uint32_t unused60;
    void* context; /* caller */
    uint8_t unused72[4];
    uint32_t responseFlags; /* library */
    uint8_t unused80[8];
    uint32_t responseErrorType; /* library: 0 means good */
    uint8_t unused92[44];
};

enum { MCTPLINK_LDID_CAPACITY = 512 };

#pragma pack(push, 1)

/* One entry of the endpoint table. */
struct MctpLinkEndPoint {
    uint8_t unused0[2];
    uint8_t endPointType;
    uint8_t unused3[22];
    uint8_t i2c; /* non-zero: reached over I2C */
    uint8_t vdm; /* non-zero: reached over PCIe VDM */
    uint8_t unused27[3];
    uint16_t eid;
    uint8_t unused32[49];
    uint8_t pldm; /* non-zero: supports PLDM */
    uint8_t unused82[14];
    char ldid[MCTPLINK_LDID_CAPACITY]; /* not terminated; any byte is possible */
    uint16_t ldidLength;               /* bytes of ldid in use */
    uint8_t slotType;                  /* 0 a card slot, 4 embedded */
    uint8_t unused611;
    uint16_t slotNumber;
    uint8_t unused614[24];
    uint16_t bdf; /* PCIe bus, device, function */
    uint8_t unused640[3];
    uint8_t busAddress;
};

/* The endpoint table: this head, then entryCount entries of MctpLinkEndPoint. */
struct MctpLinkEndPointResp {
    uint32_t source;         /* 1 makes the table acceptable */
    uint32_t acceptable;     /* non-zero also makes the table acceptable */
    uint32_t discoveryState; /* 2 when the discovery is complete */
    uint32_t entryCount;
};

/* What the callback receives. A record of type MCTPLINK_TABLE_DELIVERED comes from malloc and is
 * freed by the callback. */
struct MctpLinkCallbackInfo {
    uint32_t callbackType;
    uint32_t tableAttached; /* non-zero: the table follows */
    struct MctpLinkEndPointResp table;
};

#pragma pack(pop)

/* Attaches the process; callback runs on a thread of the library from then on. The first table
 * comes without being asked for. Returns 0 when attached. */
int MctpLinkAttach(uint32_t linkType, uint32_t filter, MctpLinkCallback callback, uint32_t flags);

/* Ends the attachment. No callback runs after it has returned. Returns 0. */
int MctpLinkDetach(void);

/* Hands a request over. Returns 0 when accepted: the completion function then runs once, on a
 * thread of the library, unless the request is cleared before. */
int MctpLinkSendRequest(struct MctpLinkRequest* request, uint32_t flags);

/* Drops what is pending for the endpoint. Once it has returned, the library neither touches the
 * record nor calls its completion function. It waits for a completion function of the endpoint
 * that is running, unless that is what calls it: the caller must hold no lock that a completion
 * function takes. Returns 0. */
int MctpLinkClearRequest(uint8_t eid, uint32_t flags);

#ifdef __cplusplus
}

#if UINTPTR_MAX == UINT64_MAX
static_assert(offsetof(MctpLinkRequest, eid) == 4);
static_assert(offsetof(MctpLinkRequest, messageType) == 5);
static_assert(offsetof(MctpLinkRequest, requestFlagA) == 6);
static_assert(offsetof(MctpLinkRequest, requestBytes) == 8);
static_assert(offsetof(MctpLinkRequest, responseBytes) == 16);
static_assert(offsetof(MctpLinkRequest, requestFlagB) == 26);
static_assert(offsetof(MctpLinkRequest, requestLength) == 40);
static_assert(offsetof(MctpLinkRequest, responseLength) == 44);
static_assert(offsetof(MctpLinkRequest, completion) == 48);
static_assert(offsetof(MctpLinkRequest, responseStatus) == 56);
static_assert(offsetof(MctpLinkRequest, context) == 64);
static_assert(offsetof(MctpLinkRequest, responseFlags) == 76);
static_assert(offsetof(MctpLinkRequest, responseErrorType) == 88);
static_assert(sizeof(MctpLinkRequest) == 136);
#endif
static_assert(offsetof(MctpLinkEndPoint, endPointType) == 2);
static_assert(offsetof(MctpLinkEndPoint, i2c) == 25);
static_assert(offsetof(MctpLinkEndPoint, vdm) == 26);
static_assert(offsetof(MctpLinkEndPoint, eid) == 30);
static_assert(offsetof(MctpLinkEndPoint, pldm) == 81);
static_assert(offsetof(MctpLinkEndPoint, ldid) == 96);
static_assert(offsetof(MctpLinkEndPoint, ldidLength) == 608);
static_assert(offsetof(MctpLinkEndPoint, slotType) == 610);
static_assert(offsetof(MctpLinkEndPoint, slotNumber) == 612);
static_assert(offsetof(MctpLinkEndPoint, bdf) == 638);
static_assert(offsetof(MctpLinkEndPoint, busAddress) == 643);
static_assert(sizeof(MctpLinkEndPoint) == 644);
static_assert(sizeof(MctpLinkEndPointResp) == 16);
static_assert(offsetof(MctpLinkCallbackInfo, table) == 8);
#endif

// The cases of messages.txt: whole service messages with every field set so that a shifted read would show.

import { connecting } from "./connecting.mjs";
import { array, later, node, requestHeader, responseHeader, time, variant } from "./parts.mjs";
import { EUInformation, ua } from "./types.mjs";

function reading() {
  const values = [
    new ua.DataValue({ value: variant("Double", 21.5), sourceTimestamp: time, serverTimestamp: later }),
    new ua.DataValue({ value: array("String", ["a", "", null, "ü"]), sourceTimestamp: time }),
    new ua.DataValue({ statusCode: ua.StatusCodes.BadNodeIdUnknown, serverTimestamp: later }),
    new ua.DataValue({
      value: new ua.Variant({
        dataType: ua.DataType.Int16,
        arrayType: ua.VariantArrayType.Matrix,
        dimensions: [2, 2],
        value: new Int16Array([1, -2, 3, -4]),
      }),
    }),
    new ua.DataValue({
      value: variant(
        "ExtensionObject",
        new EUInformation({
          namespaceUri: "urn:units",
          unitId: 4408652,
          displayName: "°C",
          description: "degree Celsius",
        }),
      ),
    }),
  ];
  return [
    [
      "two-nodes",
      new ua.ReadRequest({
        requestHeader: requestHeader(5),
        maxAge: 0.25,
        timestampsToReturn: ua.TimestampsToReturn.Both,
        nodesToRead: [
          {
            nodeId: node("ns=2;s=Temperature"),
            attributeId: ua.AttributeIds.Value,
            indexRange: null,
            dataEncoding: { namespaceIndex: 0, name: "Default Binary" },
          },
          { nodeId: node("i=2258"), attributeId: ua.AttributeIds.BrowseName },
        ],
      }),
    ],
    [
      "several-values",
      new ua.ReadResponse({ responseHeader: responseHeader(5), results: values, diagnosticInfos: null }),
    ],
    [
      "diagnostics",
      new ua.ReadResponse({
        responseHeader: responseHeader(6, {
          serviceResult: ua.StatusCodes.BadTooManyOperations,
          serviceDiagnostics: new ua.DiagnosticInfo({
            symbolicId: 0,
            localizedText: 1,
            innerStatusCode: ua.StatusCodes.BadInternalError,
          }),
          stringTable: ["symbol", "text"],
        }),
        results: [],
        diagnosticInfos: [],
      }),
    ],
  ];
}

function writing() {
  return [
    [
      "two-values",
      new ua.WriteRequest({
        requestHeader: requestHeader(7),
        nodesToWrite: [
          {
            nodeId: node("ns=2;s=Temperature"),
            attributeId: ua.AttributeIds.Value,
            indexRange: "1:2",
            value: { value: variant("Float", -6.5) },
          },
          {
            nodeId: node("ns=2;i=70000"),
            attributeId: ua.AttributeIds.Value,
            value: {
              value: array("Byte", [1, 2, 255]),
              statusCode: ua.StatusCodes.UncertainInitialValue,
              sourceTimestamp: time,
            },
          },
        ],
      }),
    ],
  ];
}

function history() {
  return [
    [
      "one-reference",
      new ua.HistoryReadRequest({
        requestHeader: requestHeader(8),
        historyReadDetails: new ua.ReadRawModifiedDetails({
          isReadModified: true,
          startTime: time,
          endTime: later,
          numValuesPerNode: 1000,
          returnBounds: true,
        }),
        timestampsToReturn: ua.TimestampsToReturn.Source,
        releaseContinuationPoints: false,
        nodesToRead: [{ nodeId: node("ns=2;s=History"), continuationPoint: Buffer.from("0102", "hex") }],
      }),
    ],
    [
      "one-node",
      new ua.HistoryReadResponse({
        responseHeader: responseHeader(8),
        results: [
          {
            statusCode: ua.StatusCodes.GoodNoData,
            continuationPoint: Buffer.from("03", "hex"),
            historyData: new ua.HistoryData({
              dataValues: [
                { value: variant("Int32", -1), sourceTimestamp: time },
                { statusCode: ua.StatusCodes.BadBoundNotFound },
              ],
            }),
          },
        ],
        diagnosticInfos: [],
      }),
    ],
  ];
}

function browsing() {
  const reference = {
    referenceTypeId: node("i=35"),
    isForward: true,
    nodeId: ua.coerceExpandedNodeId("ns=2;s=Temperature"),
    browseName: { namespaceIndex: 2, name: "Temperature" },
    displayName: { locale: "de", text: "Temperatur" },
    nodeClass: ua.NodeClass.Variable,
    typeDefinition: ua.coerceExpandedNodeId("i=63"),
  };
  return [
    [
      "one-node",
      new ua.BrowseRequest({
        requestHeader: requestHeader(9),
        view: { viewId: node("i=0"), timestamp: null, viewVersion: 0 },
        requestedMaxReferencesPerNode: 500,
        nodesToBrowse: [
          {
            nodeId: node("i=85"),
            browseDirection: ua.BrowseDirection.Both,
            referenceTypeId: node("i=33"),
            includeSubtypes: true,
            nodeClassMask: 0xff,
            resultMask: 0x3f,
          },
        ],
      }),
    ],
    [
      "continued",
      new ua.BrowseResponse({
        responseHeader: responseHeader(9),
        results: [
          {
            statusCode: ua.StatusCodes.Good,
            continuationPoint: Buffer.from("cafe", "hex"),
            references: [reference, { ...reference, isForward: false }],
          },
          { statusCode: ua.StatusCodes.BadNodeIdUnknown, continuationPoint: null, references: [] },
        ],
        diagnosticInfos: [],
      }),
    ],
    [
      "one-path",
      new ua.TranslateBrowsePathsToNodeIdsRequest({
        requestHeader: requestHeader(10),
        browsePaths: [
          {
            startingNode: node("i=84"),
            relativePath: {
              elements: [
                {
                  referenceTypeId: node("i=33"),
                  isInverse: false,
                  includeSubtypes: true,
                  targetName: { namespaceIndex: 0, name: "Objects" },
                },
                {
                  referenceTypeId: node("i=47"),
                  isInverse: true,
                  includeSubtypes: false,
                  targetName: { namespaceIndex: 2, name: "Demo" },
                },
              ],
            },
          },
        ],
      }),
    ],
  ];
}

function calling() {
  return [
    [
      "two-arguments",
      new ua.CallRequest({
        requestHeader: requestHeader(11),
        methodsToCall: [
          {
            objectId: node("ns=2;s=Methods"),
            methodId: node("ns=2;s=Methods.Add"),
            inputArguments: [variant("Double", 1.25), variant("Double", -1)],
          },
        ],
      }),
    ],
    [
      "second-argument-refused",
      new ua.CallResponse({
        responseHeader: responseHeader(11),
        results: [
          {
            statusCode: ua.StatusCodes.BadInvalidArgument,
            inputArgumentResults: [ua.StatusCodes.Good, ua.StatusCodes.BadTypeMismatch],
            inputArgumentDiagnosticInfos: [
              new ua.DiagnosticInfo({}),
              new ua.DiagnosticInfo({ symbolicId: 5, additionalInfo: "not a Double" }),
            ],
            outputArguments: [variant("String", "nothing")],
          },
        ],
        diagnosticInfos: [],
      }),
    ],
  ];
}

function eventFilter() {
  const operand = (name) =>
    new ua.SimpleAttributeOperand({
      typeDefinitionId: node("i=2041"),
      browsePath: [{ namespaceIndex: 0, name }],
      attributeId: ua.AttributeIds.Value,
    });
  const literal = (value) => new ua.LiteralOperand({ value });
  return new ua.EventFilter({
    selectClauses: [operand("EventId"), operand("Time"), operand("Severity")],
    whereClause: {
      elements: [
        {
          filterOperator: ua.FilterOperator.And,
          filterOperands: [new ua.ElementOperand({ index: 1 }), new ua.ElementOperand({ index: 2 })],
        },
        {
          filterOperator: ua.FilterOperator.OfType,
          filterOperands: [literal(variant("NodeId", node("i=2041")))],
        },
        {
          filterOperator: ua.FilterOperator.GreaterThanOrEqual,
          filterOperands: [operand("Severity"), literal(variant("UInt16", 500))],
        },
      ],
    },
  });
}

function subscribing() {
  const item = (nodeId, attributeId, filter, handle) => ({
    itemToMonitor: { nodeId: node(nodeId), attributeId },
    monitoringMode: ua.MonitoringMode.Reporting,
    requestedParameters: {
      clientHandle: handle,
      samplingInterval: 250,
      filter,
      queueSize: 10,
      discardOldest: true,
    },
  });
  const deadband = new ua.DataChangeFilter({
    trigger: ua.DataChangeTrigger.StatusValueTimestamp,
    deadbandType: 2,
    deadbandValue: 1.5,
  });
  return [
    [
      "data-and-events",
      new ua.CreateMonitoredItemsRequest({
        requestHeader: requestHeader(12),
        subscriptionId: 42,
        timestampsToReturn: ua.TimestampsToReturn.Both,
        itemsToCreate: [
          item("ns=2;s=Sine", ua.AttributeIds.Value, deadband, 1),
          item("ns=2;s=Ramp", ua.AttributeIds.Value, null, 2),
          item("i=2253", ua.AttributeIds.EventNotifier, eventFilter(), 9),
        ],
      }),
    ],
    [
      "one-refused",
      new ua.CreateMonitoredItemsResponse({
        responseHeader: responseHeader(12),
        results: [
          {
            statusCode: ua.StatusCodes.Good,
            monitoredItemId: 11,
            revisedSamplingInterval: 250,
            revisedQueueSize: 10,
            filterResult: null,
          },
          {
            statusCode: ua.StatusCodes.BadEventFilterInvalid,
            monitoredItemId: 0,
            revisedSamplingInterval: 0,
            revisedQueueSize: 0,
            filterResult: new ua.EventFilterResult({
              selectClauseResults: [ua.StatusCodes.Good, ua.StatusCodes.BadNodeIdUnknown],
              selectClauseDiagnosticInfos: [],
              whereClauseResult: {
                elementResults: [
                  {
                    statusCode: ua.StatusCodes.BadFilterOperatorInvalid,
                    operandStatusCodes: [ua.StatusCodes.Good],
                    operandDiagnosticInfos: [],
                  },
                ],
              },
            }),
          },
        ],
        diagnosticInfos: [],
      }),
    ],
  ];
}

function publishing() {
  const dataChange = new ua.DataChangeNotification({
    monitoredItems: [
      {
        clientHandle: 1,
        value: { value: variant("Boolean", true), sourceTimestamp: time, serverTimestamp: later },
      },
      { clientHandle: 2, value: { statusCode: ua.StatusCodes.BadSensorFailure } },
    ],
    diagnosticInfos: [],
  });
  const events = new ua.EventNotificationList({
    events: [
      {
        clientHandle: 9,
        eventFields: [
          variant("ByteString", Buffer.from("0a0b", "hex")),
          variant("DateTime", time),
          variant("UInt16", 700),
          new ua.Variant({}),
        ],
      },
    ],
  });
  return [
    [
      "data-and-events",
      new ua.PublishResponse({
        responseHeader: responseHeader(13),
        subscriptionId: 42,
        availableSequenceNumbers: [6, 7],
        moreNotifications: true,
        notificationMessage: {
          sequenceNumber: 7,
          publishTime: later,
          notificationData: [dataChange, events],
        },
        results: [ua.StatusCodes.Good, ua.StatusCodes.BadSequenceNumberUnknown],
        diagnosticInfos: [],
      }),
    ],
    [
      "keep-alive",
      new ua.PublishResponse({
        responseHeader: responseHeader(14),
        subscriptionId: 42,
        notificationMessage: { sequenceNumber: 8, publishTime: later, notificationData: [] },
      }),
    ],
    [
      "status-change",
      new ua.PublishResponse({
        responseHeader: responseHeader(15),
        subscriptionId: 42,
        notificationMessage: {
          sequenceNumber: 9,
          publishTime: later,
          notificationData: [new ua.StatusChangeNotification({ status: ua.StatusCodes.BadTimeout })],
        },
      }),
    ],
  ];
}

export function messageCases() {
  const fault = [
    "bad-session",
    new ua.ServiceFault({
      responseHeader: responseHeader(16, { serviceResult: ua.StatusCodes.BadSessionIdInvalid }),
    }),
  ];
  return [
    ...connecting(),
    ...reading(),
    ...writing(),
    ...history(),
    ...browsing(),
    ...calling(),
    ...subscribing(),
    ...publishing(),
    fault,
  ].map(([name, message]) => ({ name, message }));
}

// The cases of messages.txt about secure channels, discovery and sessions.

import { authenticationToken, node, requestHeader, responseHeader, time } from "./parts.mjs";
import { ua } from "./types.mjs";

const nonce = Buffer.from(Array.from({ length: 32 }, (_, i) => i));
const certificate = Buffer.from(Array.from({ length: 64 }, (_, i) => (i * 7) & 0xff));
const signature = Buffer.from(Array.from({ length: 24 }, (_, i) => 255 - i));
const rsaSha256 = "http://www.w3.org/2001/04/xmldsig-more#rsa-sha256";
const noSecurity = "http://opcfoundation.org/UA/SecurityPolicy#None";
const binaryTransport = "http://opcfoundation.org/UA-Profile/Transport/uatcp-uasc-uabinary";
const endpointUrl = "opc.tcp://127.0.0.1:4840/Tavelin/Demo";

function application(name, applicationType) {
  return {
    applicationUri: `urn:korvanda:${name}`,
    productUri: "urn:korvanda:product",
    applicationName: { locale: "en", text: name },
    applicationType,
    gatewayServerUri: null,
    discoveryProfileUri: null,
    discoveryUrls: [endpointUrl, "opc.tcp://[::1]:4840"],
  };
}

function endpoint() {
  return {
    endpointUrl,
    server: application("server", ua.ApplicationType.Server),
    serverCertificate: certificate,
    securityMode: ua.MessageSecurityMode.None,
    securityPolicyUri: noSecurity,
    userIdentityTokens: [
      {
        policyId: "anonymous",
        tokenType: ua.UserTokenType.Anonymous,
        issuedTokenType: null,
        issuerEndpointUrl: null,
        securityPolicyUri: null,
      },
      {
        policyId: "user",
        tokenType: ua.UserTokenType.UserName,
        issuedTokenType: "t",
        issuerEndpointUrl: "u",
        securityPolicyUri: noSecurity,
      },
    ],
    transportProfileUri: binaryTransport,
    securityLevel: 3,
  };
}

function channelCases() {
  return [
    [
      "ordinary",
      new ua.OpenSecureChannelRequest({
        requestHeader: requestHeader(1),
        clientProtocolVersion: 0,
        requestType: ua.SecurityTokenRequestType.Renew,
        securityMode: ua.MessageSecurityMode.SignAndEncrypt,
        clientNonce: nonce,
        requestedLifetime: 600000,
      }),
    ],
    [
      "ordinary",
      new ua.OpenSecureChannelResponse({
        responseHeader: responseHeader(1),
        serverProtocolVersion: 0,
        securityToken: { channelId: 77, tokenId: 3, createdAt: time, revisedLifetime: 300000 },
        serverNonce: nonce,
      }),
    ],
    [
      "two-locales",
      new ua.GetEndpointsRequest({
        requestHeader: requestHeader(2),
        endpointUrl,
        localeIds: ["de", "en-US"],
        profileUris: [binaryTransport],
      }),
    ],
    [
      "one-endpoint",
      new ua.GetEndpointsResponse({ responseHeader: responseHeader(2), endpoints: [endpoint()] }),
    ],
  ];
}

function sessionCases() {
  return [
    [
      "ordinary",
      new ua.CreateSessionRequest({
        requestHeader: requestHeader(3),
        clientDescription: application("client", ua.ApplicationType.Client),
        serverUri: null,
        endpointUrl,
        sessionName: "Sitzung Nr. 1 – Prüfstand",
        clientNonce: nonce,
        clientCertificate: certificate,
        requestedSessionTimeout: 1200000,
        maxResponseMessageSize: 16777216,
      }),
    ],
    [
      "ordinary",
      new ua.CreateSessionResponse({
        responseHeader: responseHeader(3),
        sessionId: node("ns=1;g=72962B91-FA75-4AE6-8D28-B404DC7DAF63"),
        authenticationToken,
        revisedSessionTimeout: 60000.5,
        serverNonce: nonce,
        serverCertificate: certificate,
        serverEndpoints: [endpoint()],
        serverSoftwareCertificates: null,
        serverSignature: { algorithm: rsaSha256, signature },
        maxRequestMessageSize: 65536,
      }),
    ],
    [
      "user-name",
      new ua.ActivateSessionRequest({
        requestHeader: requestHeader(4),
        clientSignature: { algorithm: rsaSha256, signature },
        clientSoftwareCertificates: [],
        localeIds: ["de-DE", "en"],
        userIdentityToken: new ua.UserNameIdentityToken({
          policyId: "user",
          userName: "demo",
          password: Buffer.from("demo"),
          encryptionAlgorithm: null,
        }),
        userTokenSignature: { algorithm: null, signature: null },
      }),
    ],
  ];
}

export const connecting = () => [...channelCases(), ...sessionCases()];

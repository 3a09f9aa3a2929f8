ActiveRecordsView {
    objectName: "tunnels"
    kind: "tunnel"
    name: "Tunnels"
    symbol: "arrow.triangle.2.circlepath"
    titleHead: "TUNNEL"
    targetHead: "TARGET"
    modeHead: "MODE"
    addressHead: "ENDPOINT"
    modeWidth: 48
    addressWidth: 150
    copyHelp: "Copy the local endpoint for your client"
    retryHelp: "Retry — restart this tunnel"
}

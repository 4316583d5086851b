"""Check-ins without a switch: for many of them, and for wrong ones."""
import hashlib
import hmac
import http.client
import json
import pathlib
import secrets
import ssl
import time

from workbench import KEY, SECRET


def trusting(lab):
    """A TLS context that knows the lab's authority."""
    context = ssl.create_default_context()
    for certificate in pathlib.Path(lab.ports["ca_dir"]).iterdir():
        context.load_verify_locations(certificate)
    return context


def check_in(lab, context, mac, report, key=KEY, secret=SECRET):
    """One check-in as a switch makes it; the status of the reply."""
    body = json.dumps(report).encode()
    target = f"/cloud-switch/{mac}/checkin"
    proof = f"key={key},timestamp={int(time.time())},nonce={secrets.token_hex(16)}"
    signature = hmac.new(secret.encode(), proof.encode() + target.encode() + body, hashlib.sha256)
    connection = http.client.HTTPSConnection("localhost", lab.ports["https"][0], context=context,
                                             timeout=30)
    connection.putrequest("POST", target, skip_accept_encoding=True)
    for name, value in (("Content-Length", len(body)), ("Content-Type", "application/json"),
                        ("Authorization", proof), ("Signature", signature.hexdigest())):
        connection.putheader(name, str(value))
    connection.endheaders(body)
    status = connection.getresponse().status
    connection.close()
    return status


def mac_of(number):
    return f"02:AB:00:00:{number >> 8:02X}:{number & 255:02X}"


def small_report(number, seqno=1):
    """What the list of switches needs of a report."""
    return {"system": {
        "cloud": {"config_seqno": seqno, "checkin_interval": 300},
        "summary_info": {"device_name": f"Floor-{number // 10}-{number % 10}", "model": "Q18r5",
                         "firmware_version": f"1.{number % 3}.0", "uptime_seconds": 60 * seqno,
                         "ip": "192.0.2.1"}}}
